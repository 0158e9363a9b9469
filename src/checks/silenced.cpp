#include <algorithm>
#include <map>
#include <string_view>

#include <quillmate/text/operations.h>

#include "silenced_p.h"

namespace quillmate::checks {
namespace {

using symbols::Index;

constexpr std::string_view kMark = "uillmate:";  ///< after a "q" of any case
constexpr std::string_view kIgnore = "ignore";

bool IsIdCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
}

/// The checks that a comment names after its mark; all of them when nothing is there, none when the first word is
/// no id: it may be a misspelled one.
Selection Named(std::string_view rest) {
  Selection silenced;
  silenced.Clear();
  bool any = false;
  while (!rest.empty()) {
    std::size_t length = 0;
    while (length < rest.size() && IsIdCharacter(rest[length])) ++length;
    if (length == 0) {
      if (rest.front() != ' ' && rest.front() != ',' && rest.front() != '\t') break;
      rest.remove_prefix(1);
      continue;
    }
    const auto check = FindCheck(rest.substr(0, length));
    any = true;
    if (!check) break;  // words of explanation
    silenced.Add(*check);
    rest.remove_prefix(length);
  }
  if (any) return silenced;
  for (const Check& check : AllChecks()) silenced.Add(check.number);
  return silenced;
}

void Join(Selection& into, const Selection& other) {
  for (const Check& check : AllChecks()) {
    if (other.Has(check.number)) into.Add(check.number);
  }
}

/// By the first line of a logical line.
using Silences = std::map<std::uint32_t, Selection>;

/// Marks of a module. One on a line of its own counts for the next line of code.
Silences SilencesOf(const language::Module& code) {
  Silences silences;
  for (std::size_t at = code.text.find(kMark); at != std::string_view::npos; at = code.text.find(kMark, at + 1)) {
    if (at == 0 || (code.text[at - 1] | 0x20) != 'q') continue;
    std::string_view rest = code.text.substr(at + kMark.size());
    rest = rest.substr(0, rest.find_first_of("\r\n"));
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    if (rest.size() < kIgnore.size() || !text::EqualsIgnoreCase(rest.substr(0, kIgnore.size()), kIgnore)) continue;
    const auto line = static_cast<std::uint32_t>(
        std::ranges::upper_bound(code.lines, at, {}, [](const auto& l) { return std::size_t{l.offset}; }) -
        code.lines.begin());
    const language::PhysicalLine& physical = code.lines[line - 1];
    const std::string_view before = code.text.substr(physical.offset, at - physical.offset);
    if (before.find('\'') == std::string_view::npos && !physical.trailingComment &&
        physical.lineClass != language::LineClass::kComment) {
      continue;
    }
    std::uint32_t target = line;
    if (physical.lineClass == language::LineClass::kComment) {
      while (target <= code.lines.size() && (code.lines[target - 1].lineClass == language::LineClass::kComment ||
                                             code.lines[target - 1].lineClass == language::LineClass::kBlank)) {
        ++target;
      }
    }
    const Index logical = code.LogicalLineAt(target);
    if (logical == symbols::kNone) continue;
    const Selection named = Named(rest.substr(kIgnore.size()));
    const auto [entry, isNew] = silences.try_emplace(code.logicalLines[logical].firstLine, named);
    if (!isNew) Join(entry->second, named);
  }
  return silences;
}

}  // namespace

void RemoveSilenced(const symbols::ReferenceIndex& index, std::vector<Finding>& findings) {
  Index module = symbols::kNone;
  Silences silences;
  std::erase_if(findings, [&](const Finding& finding) {
    const language::Module& code = index.Code(finding.module);
    if (finding.module != module) {
      module = finding.module;
      silences = SilencesOf(code);
    }
    if (silences.empty() || finding.line == 0) return false;
    const Index logical = code.LogicalLineAt(finding.line);
    if (logical == symbols::kNone) return false;
    const auto found = silences.find(code.logicalLines[logical].firstLine);
    return found != silences.end() && found->second.Has(finding.check);
  });
}

}  // namespace quillmate::checks
