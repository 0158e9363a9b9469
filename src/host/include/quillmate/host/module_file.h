#pragma once

#include <string>
#include <string_view>

namespace quillmate::host {

/// A module file (.bas, .cls, .frm and their kin) taken apart. Everything Windows-1252 with CR LF.
///
/// Format: an optional header ("VERSION 5.00" or "VERSION 1.0 CLASS", "Object =" lines, a nested "BEGIN" ... "END"
/// block), then "Attribute" lines, then the code; further "Attribute" lines may stand inside the code.
struct ModuleFile {
  /// From "Attribute VB_Name"; empty when the file has none.
  std::string name;
  /// ComponentType; from the extension and, for .cls, from the attributes of a document module.
  int type = 0;
  /// What the host's editor shows: no header, no Attribute lines, no trailing line break.
  std::string code;
};

/// `bytes` as they lie in the file, `extension` with or without its dot, any case.
ModuleFile ParseModuleFile(std::string_view bytes, std::string_view extension);

/// True for the extensions that are read as module files: bas, cls, frm, ctl, pag, dob, dsr.
bool IsModuleFileExtension(std::string_view extension);

/// The code with every line dropped whose first ten characters behind leading blanks are "Attribute " in any case.
std::string DropAttributeLines(std::string_view code);

/// Lines of a code text as the host's editor counts them: 0 for an empty text, otherwise its line breaks + 1.
int CountLines(std::string_view code) noexcept;

}  // namespace quillmate::host
