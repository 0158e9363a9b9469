#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/document_facts.h>
#include <quillmate/office/reason.h>
#include <quillmate/office/vba_project.h>

/// Macro projects of Office files, read without Office, and what the documents around them say. No macro can run.
///
/// What a file is, its first bytes say, not its name:
///
/// * zip: the first entry whose path ends in "vbaProject.bin" holds the project [ECMA-376], [MS-OVBA];
/// * compound file: the project is in a storage of a workbook [MS-XLS], of a document [MS-DOC] or on its own, or,
///   packed, in a presentation's stream [MS-PPT]; or it holds a zip that is encrypted [MS-OFFCRYPTO]. What was
///   encrypted with the password that the hosts try by themselves is opened;
/// * Access database: the project is in system tables (see access_database_p.h).
///
/// Files may be damaged or made to do harm. Bounds: a packed project of more than kLargestVbaProject bytes is not read;
/// of the file itself only what leads to the project is read (see compound_file.h and vba_project.h); a zip's table of
/// contents must not be longer than 8 MB. Facts are searched in documents with macros only, part by part as a stream,
/// at most 2 GB of unpacked parts. All texts together have at most kLargestVbaText bytes, and of a file that is made to
/// burst, MostVbaText. Files are opened for reading and never kept open.
namespace quillmate::office {

inline constexpr std::size_t kLargestVbaProject = std::size_t{128} << 20U;

/// Bytes of all texts of a document of that many bytes: 64 times as many, and at least 8 MB. What people write packs to
/// a tenth at best, and a document full of code has compiled code beside it.
constexpr std::size_t MostVbaText(std::uint64_t fileSize) noexcept {
  constexpr std::uint64_t kAlways = std::uint64_t{8} << 20U;
  constexpr std::uint64_t kMostPacked = 64;
  if (fileSize >= kLargestVbaText / kMostPacked) return kLargestVbaText;
  return static_cast<std::size_t>(std::max(kAlways, fileSize * kMostPacked));
}

enum class OfficeHost { kUnknown, kExcel, kWord, kPowerPoint, kAccess };

/// "excel", "word", "powerpoint", "access"; empty for kUnknown.
std::string_view WordOf(OfficeHost host) noexcept;

struct ReadOptions {
  /// Search the document for what it says of its macros.
  bool facts = false;
  /// Take the formulas of Excel 4 macro sheets for modules (kOtherComponent), where the file has them as text.
  bool excel4 = false;
  /// Bytes of all texts of a project together; those after that are left out. ReadOfficeFile takes it down to
  /// MostVbaText.
  std::size_t mostText = kLargestVbaText;
};

struct OfficeFile {
  enum class State {
    kRead,       // there is a project; it may be locked, and its warnings say what is missing
    kNoMacros,   // an Office file without a project
    kNotOffice,  // something else
    kFailed      // empty, not readable, encrypted, compiled, damaged, or too large
  };

  State state = State::kFailed;
  /// True when its first bytes are those of a kind of file that this room reads: whatever its name, it is no text.
  bool recognized = false;
  /// Why there is no project; kNone when there is one.
  Reason reason = Reason::kNone;
  /// The macro sheets of Excel 4 that a file without VBA holds, German: "enthält Excel-4-Makros: Makro1 (3 Formeln)".
  std::string macroSheets;
  OfficeHost host = OfficeHost::kUnknown;
  VbaProject project;
  /// But for `excel4` and the password empty when facts were not asked for.
  DocumentFacts facts;

  /// Why there is no project: German, UTF-8, one line, without the file's name. Empty when there is one.
  std::string ReasonText() const;
};

/// Reads the project and the facts of a file, or of bytes from anywhere. Never throws for what is in it.
OfficeFile ReadOfficeFile(const std::filesystem::path& file, const ReadOptions& options = {});
OfficeFile ReadOfficeFile(ByteSource& source, const ReadOptions& options = {});

/// True when the first bytes of a file, 32 at best, are those of a kind that this room reads.
bool LooksLikeOffice(std::string_view head) noexcept;

/// The extensions of files that can hold macros, without dots, in lower case: for the choice of files in a dialog or a
/// folder.
std::span<const std::string_view> OfficeFileExtensions() noexcept;

}  // namespace quillmate::office
