#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include <quillmate/project/outline_difference.h>
#include <quillmate/symbols/exact_routines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::project {
namespace {

using symbols::ExactRoutine;

struct Entry {
  std::int32_t start = 0;
  std::string name;  // as written, Windows-1252
  int kind = 0;
  std::int32_t end = 0;

  bool SameName(const Entry& other) const { return name == other.name && kind == other.kind; }
};

/// The routines of one module by their first line; 0 for those without one.
std::vector<Entry> OutlineOf(const codedb::ModuleRecord& module) {
  std::vector<Entry> outline;
  for (const codedb::RoutineRecord& routine : module.routines) {
    outline.push_back({routine.start.value_or(codedb::Line{}).value, std::string(text::Trim(routine.name)),
                       routine.kind, routine.end.value_or(codedb::Line{}).value});
  }
  std::ranges::stable_sort(outline, {}, &Entry::start);
  return outline;
}

std::vector<Entry> OutlineOf(const language::Module& code, const symbols::ModulePlaces& places) {
  std::vector<Entry> outline;
  for (const ExactRoutine& routine : symbols::ExactRoutines(code)) {
    const language::Declaration& declaration = code.declarations[routine.declaration];
    outline.push_back({static_cast<std::int32_t>(places.ShownLine(routine.first)),
                       text::CodeFromUtf8(code.Spelling(declaration)), symbols::IndexKind(declaration.kind),
                       static_cast<std::int32_t>(places.ShownLine(routine.last))});
  }
  std::ranges::stable_sort(outline, {}, &Entry::start);
  return outline;
}

OutlineDifference Compare(const std::vector<Entry>& fixed, const std::vector<Entry>& exact) {
  OutlineDifference difference;
  auto known = fixed.begin();
  auto real = exact.begin();
  while (known != fixed.end() || real != exact.end()) {
    if (real == exact.end() || (known != fixed.end() && known->start < real->start)) {
      ++difference.invented;
      ++known;
    } else if (known == fixed.end() || real->start < known->start) {
      ++difference.missing;
      ++real;
    } else {
      // Without its name a routine is as good as lost.
      if (!known->SameName(*real)) {
        ++difference.missing;
      } else if (known->end != real->end) {
        ++difference.shifted;
      }
      ++known;
      ++real;
    }
  }
  return difference;
}

std::string Counted(int count, const char* text) {
  return std::to_string(count) + (count == 1 ? " Routine " : " Routinen ") + text;
}

}  // namespace

std::string DifferenceText(const OutlineDifference& difference) {
  std::string text;
  const auto add = [&text](int count, const char* words) {
    if (count > 0) text += (text.empty() ? "Gliederung abweichend: " : ", ") + Counted(count, words);
  };
  add(difference.missing, "nicht erkannt");
  add(difference.invented, "zu viel");
  add(difference.shifted, "mit anderem Umfang");
  return text;
}

std::vector<OutlineDifference> CompareOutlines(const symbols::ReferenceIndex& index,
                                               const std::vector<symbols::ModulePlaces>& places,
                                               const std::vector<codedb::ModuleRecord>& records) {
  std::map<std::int32_t, symbols::Index> modules;
  for (std::size_t i = 0; i < places.size(); ++i) modules.emplace(places[i].Number(), static_cast<symbols::Index>(i));
  std::vector<OutlineDifference> differences;
  for (const codedb::ModuleRecord& record : records) {
    const auto module = modules.find(record.number.value);
    if (module == modules.end()) continue;
    OutlineDifference found = Compare(OutlineOf(record), OutlineOf(index.Code(module->second), places[module->second]));
    found.module = record.number;
    if (found.missing + found.invented + found.shifted > 0) differences.push_back(found);
  }
  return differences;
}

}  // namespace quillmate::project
