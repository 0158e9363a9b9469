#include <algorithm>
#include <array>

#include <quillmate/office/component_type.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "project_names_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

/// The next word of a line, taken from the front; everything up to a blank, "(" or a line's end.
std::string_view TakeWord(std::string_view& rest) noexcept {
  const std::size_t start = std::min(rest.find_first_not_of(" \t"), rest.size());
  rest.remove_prefix(start);
  const std::size_t end = std::min(rest.find_first_of(" \t(:'"), rest.size());
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  return word;
}

struct Header {
  std::string_view name;
  bool isFunction = false;
  bool isPrivate = false;
};

/// A line that begins a Sub or a Function. Property procedures are nobody's macro.
bool ReadHeader(std::string_view line, Header& header) noexcept {
  std::string_view word = TakeWord(line);
  if (word.empty()) return false;
  header.isPrivate = text::EqualsIgnoreCase(word, "Private");
  if (header.isPrivate || text::EqualsIgnoreCase(word, "Public") || text::EqualsIgnoreCase(word, "Friend")) {
    word = TakeWord(line);
  }
  if (text::EqualsIgnoreCase(word, "Static")) word = TakeWord(line);
  header.isFunction = text::EqualsIgnoreCase(word, "Function");
  if (!header.isFunction && !text::EqualsIgnoreCase(word, "Sub")) return false;
  header.name = TakeWord(line);
  constexpr std::string_view kTypeSuffixes = "%&!#@$^";
  if (!header.name.empty() && kTypeSuffixes.find(header.name.back()) != std::string_view::npos) {
    header.name.remove_suffix(1);
  }
  return !header.name.empty();
}

bool IsNameCharacter(char c) noexcept {
  return text::IsIdentifierCharacter(c) || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

/// The name in front of a "(" at `at`, with a module and the book in front of it.
std::string_view NameBefore(std::string_view formula, std::size_t at) noexcept {
  std::size_t start = at;
  while (start > 0 && IsNameCharacter(formula[start - 1])) --start;
  constexpr std::string_view kThisBook = "[0]!";
  if (start == at || start == 0 || formula[start - 1] != '!') return formula.substr(start, at - start);
  return formula.substr(0, start).ends_with(kThisBook) ? formula.substr(start, at - start) : std::string_view();
}

}  // namespace

ProjectNames::ProjectNames(const VbaProject& project) {
  for (const VbaModule& module : project.modules) {
    if (module.type == kHostDocument && documentModule_.empty()) documentModule_ = module.name;
    if (module.type == kStdModule || module.type == kHostDocument) TakeModule(module);
  }
}

void ProjectNames::TakeModule(const VbaModule& module) {
  const bool isUtf8 = !module.original.empty();
  text::LineReader lines(isUtf8 ? module.original : module.code);
  Header header;
  for (std::string_view line; lines.Next(line);) {
    if (!ReadHeader(line, header)) continue;
    const std::string name = isUtf8 ? std::string(header.name) : text::Utf8FromCode(header.name);
    qualified_.insert(UpperCaseName(module.name + "." + name));
    if (!header.isFunction || header.isPrivate || module.type != kStdModule) continue;
    const auto [entry, isNew] = functions_.insert(UpperCaseName(name));
    longestFunction_ = std::max(longestFunction_, entry->size());
  }
}

bool ProjectNames::Holds(const Names& names, std::string_view name) {
  std::array<char, 64> upper;
  if (name.size() > upper.size() || !text::IsAscii(name)) return names.contains(UpperCaseName(name));
  std::transform(name.begin(), name.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
  return names.contains(std::string_view(upper.data(), name.size()));
}

bool ProjectNames::IsCellFunction(std::string_view name) const {
  return Holds(functions_, name.substr(name.rfind('.') + 1));
}

bool ProjectNames::IsQualifiedRoutine(std::string_view text) const { return Holds(qualified_, text); }

std::vector<std::string> CellFunctionsIn(std::string_view formula, const ProjectNames& names, std::string_view module) {
  const auto isKnown = [&](std::string_view name) {
    if (names.IsCellFunction(name)) return true;
    return !module.empty() && names.IsQualifiedRoutine(std::string(module).append(".").append(name));
  };
  constexpr std::size_t kMost = 1000;
  std::vector<std::string> found;
  char quote = '\0';
  for (std::size_t at = 0; at < formula.size(); ++at) {
    const char c = formula[at];
    // A text, or a sheet's name.
    if (quote == '\0' ? c == '"' || c == '\'' : c == quote) quote = quote == '\0' ? c : '\0';
    if (c != '(' || quote != '\0') continue;
    std::string_view name = NameBefore(formula, at);
    constexpr std::string_view kPrefix = "_xludf.";
    if (name.starts_with(kPrefix)) name.remove_prefix(kPrefix.size());
    if (name.empty() || name.starts_with("_xlfn.") || !isKnown(name)) continue;
    if (std::find(found.begin(), found.end(), name) == found.end()) found.emplace_back(name);
    if (found.size() == kMost) break;
  }
  return found;
}

}  // namespace quillmate::office
