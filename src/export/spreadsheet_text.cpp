#include <algorithm>

#include <quillmate/text/utf8.h>

#include "spreadsheet_text_p.h"

namespace quillmate::output {
namespace {

/// Of UTF-16, by which spreadsheets count.
constexpr std::size_t kMostCellUnits = 32767;
constexpr std::size_t kMostNameCharacters = 31;
constexpr char32_t kControlPictures = 0x2400;
constexpr std::string_view kNotInNames = "[]:*?/\\";

bool IsHex(char c) noexcept { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }

/// "_x", four hexadecimal digits and "_".
bool LooksEscaped(std::string_view text) noexcept {
  return text.size() >= 7 && text.starts_with("_x") && text[6] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, IsHex);
}

char32_t Shown(char32_t character) noexcept {
  if (character == '\r') return '\n';
  if (character < 0x20 && character != '\t' && character != '\n') return kControlPictures + character;
  if (character == 0x7F) return kControlPictures + 0x21;
  // No characters at all for files of this kind.
  if (character == 0xFFFE || character == 0xFFFF) return text::kReplacementCharacter;
  return character;
}

/// The first `most` characters.
std::string_view Beginning(std::string_view utf8, std::size_t most) noexcept {
  std::size_t end = 0;
  while (end < utf8.size() && most-- > 0) end += std::max<std::size_t>(text::ReadUtf8(utf8.substr(end)).length, 1);
  return utf8.substr(0, end);
}

std::string Lowered(std::string name) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

std::string PermittedName(std::string_view wanted) {
  std::size_t ignored = 0;
  std::string name = CellText(wanted, ignored);
  std::ranges::replace_if(
      name, [](char c) { return kNotInNames.find(c) != std::string_view::npos || c < ' '; }, ' ');
  while (name.starts_with('\'') || name.starts_with(' ')) name.erase(0, 1);
  while (name.ends_with('\'') || name.ends_with(' ')) name.pop_back();
  return name.empty() ? "Tabelle" : name;
}

}  // namespace

std::string CellText(std::string_view utf8, std::size_t& characters) {
  std::string cell;
  cell.reserve(utf8.size());
  std::size_t units = 0;
  // What is kept where it turns out to be too long.
  std::size_t kept = 0;
  characters = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const std::string_view rest = utf8.substr(at);
    const text::Utf8Character read = text::ReadUtf8(rest);
    at += std::max<std::size_t>(read.length, 1);
    // Line breaks in cells are LF.
    if (rest.starts_with("\r\n")) continue;
    const std::string_view escape = LooksEscaped(rest) ? "_x005F" : "";
    const char32_t character = read.length == 0 ? text::kReplacementCharacter : Shown(read.character);
    units += escape.size() + (character > 0xFFFF ? 2 : 1);
    if (units > kMostCellUnits) {
      cell.resize(kept);
      return cell += "…";
    }
    cell += escape;
    text::AppendUtf8(cell, character);
    ++characters;
    if (units < kMostCellUnits) kept = cell.size();
  }
  return cell;
}

std::string SheetName(std::string_view wanted, int number, std::set<std::string>& taken) {
  const std::string name = PermittedName(wanted);
  for (;; ++number) {
    const std::string tail = number > 1 ? " (" + std::to_string(number) + ")" : "";
    std::string whole = std::string(Beginning(name, kMostNameCharacters - tail.size())) + tail;
    if (taken.insert(Lowered(whole)).second) return whole;
  }
}

}  // namespace quillmate::output
