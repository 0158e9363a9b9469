#include <algorithm>
#include <cstdint>
#include <vector>

#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>

#include "facts_collector_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

/// Longer than any name of a routine with its module, project and book.
constexpr std::size_t kLongestTarget = 1000;

}  // namespace

void FactsCollector::Add(Binding::Kind kind, std::string target, std::string place, std::string module) {
  if (target.empty() || target.size() > kLongestTarget) return;
  if (facts_.bindings.size() >= kMostFacts) return Bound("Sehr viele Verweise auf Makros: der Rest wurde ausgelassen");
  facts_.bindings.push_back({kind, std::move(target), std::move(place), std::move(module), 1});
}

void FactsCollector::Count(Binding::Kind kind, std::string_view target, const std::string& place) {
  const auto [entry, isNew] = counted_.try_emplace({kind, std::string(target)}, facts_.bindings.size());
  if (isNew) {
    const std::size_t before = facts_.bindings.size();
    Add(kind, std::string(target), place);
    if (facts_.bindings.size() == before) counted_.erase(entry);
  } else {
    ++facts_.bindings[entry->second].count;
  }
}

void FactsCollector::AddControl(Control control) {
  if (control.module.empty() || control.name.empty() || facts_.controls.size() >= kMostFacts) return;
  const bool isNew = controls_.insert(UpperCaseName(control.module + "." + control.name)).second;
  if (isNew) facts_.controls.push_back(std::move(control));
}

void FactsCollector::Notice(const std::string& notice) {
  if (facts_.notices.size() < kMostFacts && noticed_.insert(notice).second) facts_.notices.push_back(notice);
}

namespace {

/// "CommandStart, 3, 0, MSForms, CommandButton": name, id, order, library, class.
void TakeControl(std::string_view value, const std::string& module, FactsCollector& collector) {
  const std::vector<std::string_view> parts = text::Split(value, ",");
  constexpr std::size_t kParts = 5;
  if (parts.size() < kParts) return;
  Control control;
  control.module = module;
  control.name = text::Trim(parts[0]);
  control.library = text::Trim(parts[3]);
  control.type = text::Trim(parts[4]);
  collector.AddControl(std::move(control));
}

/// Takes an Attribute line apart that holds one of the two.
void TakeAttribute(std::string_view line, const std::string& module, FactsCollector& collector) {
  constexpr std::string_view kControl = "Attribute VB_Control";
  constexpr std::string_view kShortcut = ".VB_ProcData.VB_Invoke_Func";
  constexpr std::string_view kNoText = "\\n14";
  const std::size_t start = line.find('"');
  const std::size_t end = line.rfind('"');
  if (start == std::string_view::npos || end == start) return;
  const std::string_view value = line.substr(start + 1, end - start - 1);
  line = text::Trim(line.substr(0, start));
  if (text::StartsWithIgnoreCase(line, kControl)) return TakeControl(value, module, collector);
  const std::size_t shortcut = line.find(kShortcut);
  const std::size_t name = line.find(' ');
  if (shortcut == std::string_view::npos || name > shortcut || !value.ends_with(kNoText)) return;
  const std::string_view key = value.substr(0, value.size() - kNoText.size());
  if (key.empty() || key == " " || text::ReadUtf8(key).length != key.size()) return;
  const std::string routine(text::Trim(line.substr(name, shortcut - name)));
  collector.Add(Binding::Kind::kShortcut, module + "." + routine, "Tastenkombination " + ShortcutName(key));
}

}  // namespace

void TakeCodeFacts(const VbaProject& project, FactsCollector& collector) {
  for (const VbaModule& module : project.modules) {
    for (const HiddenLines& hidden : module.hidden) {
      text::LineReader lines(hidden.text);
      for (std::string_view line; lines.Next(line);) TakeAttribute(line, module.name, collector);
    }
  }
}

std::string PlaceOnSheet(std::string_view kind, std::string_view name, std::string_view sheet) {
  std::string place(kind);
  if (!name.empty()) place.append(" '").append(name).append("'");
  if (!sheet.empty()) place.append(" auf Blatt ").append(sheet);
  return place;
}

std::string OneLineText(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::string line;
  std::size_t characters = 0;
  bool blank = false;
  while (!text.empty()) {
    const text::Utf8Character read = text::ReadUtf8(text);
    const std::size_t length = std::max<std::size_t>(read.length, 1);
    if (read.length > 0 && read.character <= ' ') {
      blank = !line.empty();
    } else if (read.length > 0) {
      if (characters == kLongest) return line + "…";
      if (blank) line += ' ';
      blank = false;
      line += text.substr(0, length);
      ++characters;
    }
    text.remove_prefix(length);
  }
  return line;
}

std::string CellName(std::uint32_t row, std::uint32_t column) {
  std::string letters;
  for (std::uint64_t rest = std::uint64_t{column} + 1; rest > 0; rest = (rest - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  }
  return letters + std::to_string(std::uint64_t{row} + 1);
}

std::string ShortcutName(std::string_view key) {
  const std::string upper = UpperCaseName(key);
  return (upper == key && key >= "A" ? "Strg+Umschalt+" : "Strg+") + upper;
}

}  // namespace quillmate::office
