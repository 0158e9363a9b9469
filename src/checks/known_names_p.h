#pragma once

#include <cstdint>

/// Names of the hosts and their libraries that checks ask for.
namespace quillmate::checks {

// clang-format off
#define QUILLMATE_KNOWN_NAMES(X)                                                                                       \
  X(Access) X(Activate) X(ActiveCell) X(ActiveDocument) X(ActiveSheet) X(ActiveWorkbook) X(Application)               \
  X(BreakLink) X(Calculation) X(Cells) X(ChangeLink) X(Collection) X(Columns) X(CopyFile) X(CopyFolder) X(Count)      \
  X(CreateFolder) X(CreateObject) X(CreateTextFile) X(CurrentDb) X(Database) X(DeleteFile) X(DeleteFolder)            \
  X(DeleteSetting) X(Description) X(Dictionary) X(Document) X(EnableEvents) X(End) X(Erl) X(Err) X(Error) X(Excel)    \
  X(ExportAsFixedFormat) X(FileCopy) X(FileSystem) X(FileSystemObject) X(Find) X(FollowHyperlink) X(GetAllSettings)   \
  X(GetObject) X(GetSetting) X(Interaction) X(Kill) X(LinkSources) X(Me) X(MkDir) X(MoveFile) X(Number) X(ObjPtr)     \
  X(Offset) X(OpenDatabase) X(OpenRecordset) X(OpenTextFile) X(Raise) X(Range) X(Recordset) X(RegDelete) X(RegRead)   \
  X(RegWrite) X(RmDir) X(Row) X(Rows) X(RunSQL) X(SaveAs) X(SaveCopyAs) X(SaveSetting) X(ScreenUpdating) X(Select)    \
  X(Selection) X(SendForReview) X(SendKeys) X(SendMail) X(SendObject) X(SetAttr) X(SetWarnings) X(Sheets) X(Shell)    \
  X(SpecialCells) X(StrPtr) X(ThisWorkbook) X(TransferDatabase) X(TransferSpreadsheet) X(TransferText)                \
  X(UpdateLink) X(VarPtr) X(VBA) X(VBComponents) X(VBE) X(VBProject) X(Word) X(Workbook) X(Workbooks) X(Worksheet)    \
  X(Worksheets) X(xlCalculationManual)
// clang-format on

enum class Known : std::uint16_t {
  kNone_,
#define QUILLMATE_KNOWN_NAME(spelling) k##spelling,
  QUILLMATE_KNOWN_NAMES(QUILLMATE_KNOWN_NAME)
#undef QUILLMATE_KNOWN_NAME
};

/// By language::HashName of the folded name; kNone_ for all others.
Known FindKnown(std::uint64_t nameHash) noexcept;

}  // namespace quillmate::checks
