#include <algorithm>

#include "site_links_p.h"
#include "site_walk_p.h"

namespace quillmate::output {
namespace {

/// The routine around each line of a module, by line; of several the one with the lowest number.
std::vector<int> OwnersOfLines(const SiteModel& model, const SiteModule& module, std::int32_t lineCount) {
  std::vector<int> byNumber;
  for (int i = module.first; i < module.last; ++i) byNumber.push_back(i);
  std::sort(byNumber.begin(), byNumber.end(),
            [&](int a, int b) { return model.Routine(a).record->number > model.Routine(b).record->number; });
  std::vector<int> owners(static_cast<std::size_t>(lineCount) + 1, kNoRoutine);
  for (const int i : byNumber) {
    const codedb::RoutineRecord& record = *model.Routine(i).record;
    if (!record.start || !record.end) continue;
    const std::int32_t first = std::max(record.start->value, 1);
    const std::int32_t last = std::min(record.end->value, lineCount);
    if (first <= last) std::fill(owners.begin() + first, owners.begin() + last + 1, i);
  }
  return owners;
}

class Collector {
 public:
  Collector(std::string_view markedText, int module, ReferenceFinder& finder, SiteModel& model)
      : module_(module),
        finder_(finder),
        model_(model),
        owners_(OwnersOfLines(model, model.Module(module),
                              static_cast<std::int32_t>(std::ranges::count(markedText, '\n')) + 1)) {}

  void Identifier(std::string_view word) {
    const SiteReference reference = finder_.Find(word);
    if (reference.routine == kNoRoutine || reference.isDefinition) return;
    const int owner = owners_[static_cast<std::size_t>(finder_.CurrentLine().value)];
    const int group = model_.Routine(reference.routine).group;
    if (owner != kNoRoutine) {
      SiteRoutine& caller = model_.routines[static_cast<std::size_t>(owner)];
      if (caller.group == group) return;
      Note(caller.calls, reference.routine);
    }
    Note(model_.callers[static_cast<std::size_t>(group)], SiteSource{module_, owner});
  }

  void Text(std::string_view) noexcept {}

  void Mark(text::Marker marker) {
    if (marker != text::Marker::kHeaderLineOpen) return;
    const int routine = finder_.RoutineStartingHere();
    if (routine != kNoRoutine) model_.routines[static_cast<std::size_t>(routine)].hasCode = true;
  }

  void LineBreak() { finder_.NextLine(); }

 private:
  /// The same value comes many times in a row.
  template <typename T>
  static void Note(std::vector<T>& values, const T& value) {
    if (values.empty() || values.back() != value) values.push_back(value);
  }

  int module_;
  ReferenceFinder& finder_;
  SiteModel& model_;
  std::vector<int> owners_;
};

template <typename T>
void SortUnique(std::vector<T>& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

}  // namespace

ReferenceFinder::ReferenceFinder(const SiteModel& model) : model_(model), ownOfName_(model.names.Size()) {}

void ReferenceFinder::EnterModule(int module) {
  module_ = module;
  const SiteModule& entered = model_.Module(module);
  for (int i = entered.first; i < entered.last; ++i) {
    const SiteRoutine& routine = model_.Routine(i);
    OwnRoutine& own = ownOfName_[static_cast<std::size_t>(routine.name)];
    const bool isFirst = own.module != module || routine.record->number < model_.Routine(own.routine).record->number;
    if (isFirst) own = {module, i};
  }
  line_ = {};
  current_ = kNoRoutine;
  next_ = entered.first;
  NextLine();
}

void ReferenceFinder::NextLine() noexcept {
  ++line_.value;
  const int last = model_.Module(module_).last;
  while (next_ < last && IsBegun(*model_.Routine(next_).record)) current_ = next_++;
}

SiteReference ReferenceFinder::Find(std::string_view identifier) const noexcept {
  const int name = model_.names.Find(identifier);
  if (name == text::NameTable::kNone) return {};
  if (IsInHeader() && model_.Routine(current_).name == name) return {current_, true};
  const OwnRoutine& own = ownOfName_[static_cast<std::size_t>(name)];
  return {own.module == module_ ? own.routine : model_.publicRoutine[static_cast<std::size_t>(name)], false};
}

int ReferenceFinder::RoutineStartingHere() const noexcept {
  return current_ != kNoRoutine && model_.Routine(current_).record->start == line_ ? current_ : kNoRoutine;
}

bool ReferenceFinder::IsInHeader() const noexcept {
  if (current_ == kNoRoutine) return false;
  const codedb::RoutineRecord& record = *model_.Routine(current_).record;
  return line_.value - record.start->value < std::max(record.headerLines, 1);
}

void CollectReferences(std::string_view markedText, int module, ReferenceFinder& finder, SiteModel& model) {
  finder.EnterModule(module);
  Collector collector(markedText, module, finder, model);
  WalkCode(markedText, collector);
}

void SortReferences(SiteModel& model) {
  for (SiteRoutine& routine : model.routines) SortUnique(routine.calls);
  for (std::vector<SiteSource>& callers : model.callers) SortUnique(callers);
}

}  // namespace quillmate::output
