#include <algorithm>

#include <quillmate/language/module.h>
#include <quillmate/language/parse.h>

#include "characters_p.h"

namespace quillmate::language {
namespace {

constexpr std::string_view kTypeNames[] = {"",       "Boolean", "Byte",    "Currency", "Date",    "Decimal",
                                           "Double", "Integer", "Long",    "LongLong", "LongPtr", "Object",
                                           "Single", "String",  "Variant", "Any",      ""};

/// Every run of blanks and continued line ends as one blank.
std::string WithSingleBlanks(std::string_view text) {
  std::string result;
  for (const std::string_view blanks = " \t\r\n"; !text.empty();) {
    const std::size_t from = text.find_first_not_of(blanks);
    if (from == std::string_view::npos) break;
    const std::size_t to = std::min(text.find_first_of(blanks, from), text.size());
    const std::string_view word = text.substr(from, to - from);
    if (word != "_") result.append(result.empty() ? "" : " ").append(word);
    text.remove_prefix(to);
  }
  return result;
}

}  // namespace

std::string_view Module::NameText(NameId name) const noexcept {
  if (name < kWordCount) return WordFolded(name);
  const Name& found = names[name - kWordCount];
  return std::string_view(foldedNames).substr(found.offset, found.length);
}

std::uint64_t Module::NameHash(NameId name) const noexcept {
  return name < kWordCount ? HashName(WordFolded(name)) : names[name - kWordCount].hash;
}

NameId Module::FindName(std::string_view name) const {
  const std::string folded = FoldName(name);
  for (NameId id = 0; id < NameCount(); ++id) {
    if (NameText(id) == folded) return id;
  }
  return kNone;
}

std::string_view Module::Spelling(const NameUse& use) const noexcept { return text.substr(use.offset, use.length); }

std::string_view Module::Spelling(const Declaration& declaration) const noexcept {
  return text.substr(declaration.offset, declaration.length);
}

std::string_view Module::LineText(std::uint32_t line) const noexcept {
  const std::uint32_t from = lines[line - 1].offset;
  std::size_t to = line < lines.size() ? lines[line].offset : text.size();
  if (to > from && text[to - 1] == '\n') --to;
  if (to > from && text[to - 1] == '\r') --to;
  return text.substr(from, to - from);
}

std::string Module::DeclaredType(const Declaration& declaration) const {
  if (declaration.typeLength > 0) return WithSingleBlanks(text.substr(declaration.typeOffset, declaration.typeLength));
  if ((declaration.flags & declaration_flag::kSuffixed) != 0) return std::string(TypeName(declaration.type));
  return {};
}

std::uint32_t Module::EditorLine(std::uint32_t line) const noexcept {
  std::uint32_t hiddenBefore = 0;
  const auto next = std::upper_bound(hidden.begin(), hidden.end(), line,
                                     [](std::uint32_t l, const HiddenLines& range) { return l < range.first; });
  if (next != hidden.begin()) {
    if (line <= next[-1].last) return 0;
    hiddenBefore = next[-1].hiddenBefore + next[-1].last - next[-1].first + 1;
  }
  return line - hiddenBefore;
}

std::uint32_t Module::LineOfEditorLine(std::uint32_t editorLine) const noexcept {
  // A hidden range ends before the shown line `last - hiddenBefore - length + 1`.
  const auto next =
      std::upper_bound(hidden.begin(), hidden.end(), editorLine,
                       [](std::uint32_t l, const HiddenLines& range) { return l < range.first - range.hiddenBefore; });
  if (next == hidden.begin()) return editorLine;
  return editorLine + next[-1].hiddenBefore + next[-1].last - next[-1].first + 1;
}

Index Module::LogicalLineAt(std::uint32_t line) const noexcept {
  const auto next = std::upper_bound(logicalLines.begin(), logicalLines.end(), line,
                                     [](std::uint32_t l, const LogicalLine& logical) { return l < logical.firstLine; });
  return next == logicalLines.begin() ? kNone : static_cast<Index>(next - logicalLines.begin() - 1);
}

Index Module::RoutineAt(std::uint32_t line) const noexcept {
  const auto next = std::upper_bound(routines.begin(), routines.end(), line,
                                     [](std::uint32_t l, const Routine& routine) { return l < routine.firstLine; });
  if (next == routines.begin() || line > next[-1].lastLine) return kNone;
  return static_cast<Index>(next - routines.begin() - 1);
}

void Module::Clear() {
  text = {};
  facts = {};
  counts = {};
  lines.clear();
  logicalLines.clear();
  hidden.clear();
  uses.clear();
  strings.clear();
  declarations.clear();
  routines.clear();
  variants.clear();
  attributes.clear();
  controls.clear();
  eventProperties.clear();
  problems.clear();
  deadNames.clear();
  tokens.clear();
  statements.clear();
  names.clear();
  foldedNames.clear();
}

void Module::Shrink() {
  lines.shrink_to_fit();
  logicalLines.shrink_to_fit();
  hidden.shrink_to_fit();
  uses.shrink_to_fit();
  strings.shrink_to_fit();
  declarations.shrink_to_fit();
  routines.shrink_to_fit();
  variants.shrink_to_fit();
  attributes.shrink_to_fit();
  controls.shrink_to_fit();
  eventProperties.shrink_to_fit();
  problems.shrink_to_fit();
  deadNames.shrink_to_fit();
  tokens.shrink_to_fit();
  statements.shrink_to_fit();
  names.shrink_to_fit();
  foldedNames.shrink_to_fit();
}

std::string_view TypeName(BuiltinType type) noexcept { return kTypeNames[static_cast<std::size_t>(type)]; }

}  // namespace quillmate::language
