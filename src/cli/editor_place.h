#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>

#include <quillmate/codedb/code_database.h>
#include <quillmate/symbols/project_sources.h>

/// Places as editors read them, UTF-8: "file:line:column: text" and a line break. Columns count characters from 1 on;
/// the text is the whole line of the source. Where the module has no file of its own, its name and the line in the
/// host's editor stand for it. Of a text of thousands of characters only the beginning is shown.
namespace quillmate::cli {

/// The most that is shown of a line, in bytes.
inline constexpr std::size_t kLongLine = 1023;

std::string EditorPlaceLine(std::string_view source, std::uint32_t line, std::uint32_t column, std::string_view text);

/// Finds the source's lines of the stored ones.
class EditorPlaces {
 public:
  EditorPlaces(codedb::CodeDatabase& database, const std::filesystem::path& folder);

  /// `shown` is the stored line (Windows-1252, without line break), `offset` 0-based in it.
  std::string Line(codedb::ModuleNumber module, const std::string& moduleName, codedb::Line line,
                   std::string_view shown, std::size_t offset) const;

 private:
  std::string_view SourceLine(std::size_t module, std::uint32_t line) const;

  symbols::ProjectSources project_;
  /// By module number: its position in the sources.
  std::unordered_map<std::int32_t, std::size_t> positions_;
  /// Where each line of a module's text begins, made when first asked for.
  mutable std::unordered_map<std::size_t, std::vector<std::size_t>> lineStarts_;
};

}  // namespace quillmate::cli
