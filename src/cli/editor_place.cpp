#include "editor_place.h"

#include <utility>
#include <vector>

#include <quillmate/text/windows1252.h>

namespace quillmate::cli {
namespace {

std::vector<std::size_t> LineStarts(std::string_view text) {
  std::vector<std::size_t> starts{0};
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool breaks = text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'));
    if (breaks) starts.push_back(i + 1);
  }
  return starts;
}

}  // namespace

std::string EditorPlaceLine(std::string_view source, std::uint32_t line, std::uint32_t column, std::string_view text) {
  std::string place(source);
  place.append(":").append(std::to_string(line)).append(":").append(std::to_string(column));
  place.append(": ").append(text.substr(0, kLongLine));
  if (text.size() > kLongLine) {
    // Not in the middle of a character.
    while ((static_cast<unsigned char>(place.back()) & 0xC0U) == 0x80U) place.pop_back();
    if ((static_cast<unsigned char>(place.back()) & 0x80U) != 0) place.pop_back();
    place += "…";
  }
  return place += "\n";
}

EditorPlaces::EditorPlaces(codedb::CodeDatabase& database, const std::filesystem::path& folder)
    : project_(symbols::LoadSources(database, folder)) {
  for (std::size_t i = 0; i < project_.places.size(); ++i) positions_.try_emplace(project_.places[i].Number(), i);
}

std::string_view EditorPlaces::SourceLine(std::size_t module, std::uint32_t line) const {
  const std::string_view text = project_.sources.modules[module].text;
  const auto [known, isNew] = lineStarts_.try_emplace(module);
  if (isNew) known->second = LineStarts(text);
  const std::vector<std::size_t>& starts = known->second;
  if (line == 0 || line > starts.size()) return {};
  const std::size_t end = line < starts.size() ? starts[line] : text.size();
  std::string_view found = text.substr(starts[line - 1], end - starts[line - 1]);
  return found.substr(0, found.find_last_not_of("\r\n") + 1);
}

std::string EditorPlaces::Line(codedb::ModuleNumber module, const std::string& moduleName, codedb::Line line,
                               std::string_view shown, std::size_t offset) const {
  const auto column = static_cast<std::uint32_t>(offset + 1);
  const auto found = positions_.find(module.value);
  const auto number = static_cast<std::uint32_t>(line.value);
  const std::uint32_t source = found == positions_.end() ? 0 : project_.places[found->second].TextLineOfShown(number);
  const std::string layout = text::Utf8FromCode(shown);
  if (source == 0) return EditorPlaceLine(text::Utf8FromCode(moduleName), number, column, layout);
  const symbols::ModuleSource& sources = project_.sources.modules[found->second];
  const std::string_view own = SourceLine(found->second, source);
  const std::uint32_t there = symbols::MapColumn(layout, own, column);
  if (sources.linesOfFile && !sources.file.empty()) return EditorPlaceLine(sources.file, source, there, own);
  const std::uint32_t editor = project_.places[found->second].EditorLine(source);
  return EditorPlaceLine(text::Utf8FromCode(moduleName), editor, there, own);
}

}  // namespace quillmate::cli
