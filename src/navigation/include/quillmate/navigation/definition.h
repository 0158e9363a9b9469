#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <quillmate/codedb/code_database.h>

namespace quillmate::navigation {

/// The identifier that the caret is in or directly after; empty when the character before the caret belongs to
/// none, so also with the caret just in front of a word, at the start or at the end of the text. Of a qualified name it
/// is the part on the caret's side of the ".". A word that ends with the very last character of the text loses that
/// character.
///
/// `text` is a code view's text, `caret` a 0-based offset in it. The result points into `text`.
std::string_view IdentifierAtCaret(std::string_view text, std::size_t caret) noexcept;

/// Shown when no definition is found; UTF-8.
inline constexpr std::string_view kUnknownIdentifierText = "Bezeichner unter Cursor nicht erkannt";

/// Where a routine is defined.
struct Definition {
  codedb::ModuleNumber moduleNumber;
  /// Windows-1252; empty when the routine is in the module that was asked from, which the caller knows.
  std::string moduleName;
  /// 0 when the index has none for the routine.
  codedb::Line startLine;
  bool sameModule = false;
};

/// Looks a name (Windows-1252) up as seen from a module: first among all routines of that module, private ones
/// included, then among the routines of any module that are not private. Of several the first record that the database
/// returns counts. Throws files::Failure.
std::optional<Definition> FindDefinition(codedb::CodeDatabase& database, codedb::ViewIndex view, std::string_view name);

}  // namespace quillmate::navigation
