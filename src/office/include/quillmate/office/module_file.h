#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/files/source_text.h>

namespace quillmate::office {

/// Lines that the host's editor hides, before the editor's line `line` (1-based; one more than its last: at the end).
struct HiddenLines {
  int line = 1;
  /// UTF-8, LF between the lines.
  std::string text;
};

/// A module's text as the host's editor shows it, and what it holds back.
struct EditorText {
  /// Windows-1252 with CR LF: no header, no Attribute lines, and one trailing line break less.
  std::string code;
  /// Lines of `code` as CountLines counts them.
  int lineCount = 0;
  /// In the order of their lines. With `code` in between it is the source again, but for lines of binary data (those
  /// that begin with "0x" in an Access export), which are empty here.
  std::vector<HiddenLines> hidden;
  /// Characters of `code` that Windows-1252 lacks; when there are any, `original` is the code with them: UTF-8 with
  /// CR LF. Else it is empty.
  std::size_t replaced = 0;
  std::string original;
};

/// A module file (.bas, .cls, .frm and their kin) taken apart.
///
/// Format, as the host's editor and VB write it (words in upper or lower case, lines ended by CR LF, LF or CR):
///
///     VERSION 5.00                                  "VERSION 1.0 CLASS" in class modules; standard modules have none
///     Object = "{...}#2.0#0"; "MSCOMCTL.OCX"        any number, forms only
///     Begin VB.Form Form1                           "BEGIN" alone in class modules
///        BeginProperty Font                         blocks nest: Begin ... End, BeginProperty ... EndProperty
///        EndProperty
///        Begin VB.CommandButton Command1
///        End
///     End
///     Attribute VB_Name = "Form1"
///     Attribute VB_PredeclaredId = True
///     Option Explicit                               the code; further Attribute lines are inside it
///
/// The header begins with the file's first line ("VERSION" and a number) and ends with the End of the outer block. A
/// file whose outer block never ends has no header: all of it is code, so that nothing gets lost.
///
/// The text export of an Access form or report begins with "Version =" and a number; everything up to the line
/// "CodeBehindForm" is its header, and without that line it holds no code.
struct ModuleFile : EditorText {
  /// From the first "Attribute VB_Name"; empty when the file has none (the caller knows the file's name).
  /// Windows-1252, and the same in UTF-8.
  std::string name, utf8Name;
  /// ComponentType; from the extension and, for .cls, from the attributes of a document module. A text export of Access
  /// (.txt) has the type that its content tells: forms and reports are documents.
  int type = 0;
  /// What the module is called in front of the file's name where `name` is empty: "Form_" and "Report_" of a text
  /// export.
  std::string_view namePrefix;
};

/// `bytes` as they are in the file, `extension` with or without its dot, in upper or lower case.
///
/// A .cls file is a document module when VB_PredeclaredId and VB_Exposed are True and VB_Creatable is not, or when
/// VB_Base begins with "0{0002" (the class ids of the hosts' own documents).
ModuleFile ParseModuleFile(std::string_view bytes, std::string_view extension);

/// The same with nothing of the text but `lineCount`: what a listing needs, at the cost of one look at the bytes.
ModuleFile SummarizeModuleFile(std::string_view bytes, std::string_view extension);

/// A text without a header: only Attribute lines are hidden.
EditorText TakeEditorText(const files::DecodedText& text);

/// True for the extensions that are read as module files: bas, cls, frm, ctl, pag, dob, dsr. Text exports of Access are
/// told by their content instead (text_export.h).
bool IsModuleFileExtension(std::string_view extension);

/// The code with every line dropped whose first ten characters after leading blanks are "Attribute ", regardless of
/// case.
std::string DropAttributeLines(std::string_view code);

/// Lines of a code text as the host's editor counts them: 0 for an empty text, otherwise its line breaks + 1.
int CountLines(std::string_view code) noexcept;

}  // namespace quillmate::office
