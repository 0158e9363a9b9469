#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::office {

/// What Access writes when an object is saved as text. It leaves the file's name to whoever asks for that, and mostly
/// that is NAME.txt in a folder of its kind; what such a file holds is told by its beginning alone:
///
///     Version =20                       form, report: properties without blocks, then "Begin Form" or "Begin Report"
///     VersionRequired =20
///     Begin Form
///
///     Version =196611                   macro: a block without a name
///     ColumnsShown =0
///     Begin
///         Action ="RunCode"
///
///     Operation =1                      query, as parts or as a statement: dbMemo "SQL" ="SELECT ..."
///     Option =0
///
///     Option Compare Database           module: an Option statement, an attribute or the header of a class, below
///     Option Explicit                   nothing but blank lines and comments
///
/// Anything else that ends in .txt is no code.
enum class TextExport { kNone, kModule, kForm, kReport, kQuery, kMacro };

/// Without its dot.
inline constexpr std::string_view kTextExportExtension = "txt";

/// As much of a file as has to be known.
inline constexpr std::size_t kTextExportHead = std::size_t{1} << 15U;

/// `head`: the beginning of a file, in any encoding that module files have.
TextExport TextExportOf(std::string_view head);

/// A file that holds a module of its own.
constexpr bool HoldsModule(TextExport found) noexcept {
  return found == TextExport::kModule || found == TextExport::kForm || found == TextExport::kReport;
}

/// What the module of such a file is called in the editor before the file's own name: "Form_", "Report_" or nothing.
std::string_view ModuleNamePrefix(TextExport found) noexcept;

/// The names that a query or macro calls: whatever a "(" follows, functions of the language too, each once and at most
/// 1000. `bytes` is the whole file; UTF-8.
std::vector<std::string> NamesCalledIn(std::string_view bytes);

}  // namespace quillmate::office
