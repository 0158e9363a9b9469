#include <algorithm>
#include <functional>
#include <numeric>

#include <quillmate/navigation/routine_lines.h>

namespace quillmate::navigation {

LineWalk::LineWalk(const std::vector<codedb::RoutineRecord>& routines)
    : routines_(routines), byStart_(routines.size()) {
  std::iota(byStart_.begin(), byStart_.end(), 0);
  std::ranges::stable_sort(byStart_, {}, [&](int i) { return routines[static_cast<std::size_t>(i)].start; });
}

int LineWalk::At(codedb::Line line) {
  const auto routine = [&](int i) -> const codedb::RoutineRecord& { return routines_[static_cast<std::size_t>(i)]; };
  for (; next_ < byStart_.size() && routine(byStart_[next_]).start <= line; ++next_) {
    begun_.push_back(byStart_[next_]);
    std::ranges::push_heap(begun_, std::greater());
  }
  while (!begun_.empty() && routine(begun_.front()).end < line) {
    std::ranges::pop_heap(begun_, std::greater());
    begun_.pop_back();
  }
  return begun_.empty() ? -1 : begun_.front();
}

std::optional<std::string> CaretTracker::Track(codedb::CodeDatabase& database, const CodeView& view,
                                               codedb::ViewIndex index) {
  if (view.Length() == 0 || view.LineAt(view.SelStart()) == lastLine_) return std::nullopt;
  return Refresh(database, view, index);
}

std::string CaretTracker::Refresh(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index) {
  lastLine_ = view.LineAt(view.SelStart());
  const auto routine = database.RoutineAt(lastLine_, codedb::ModuleOf(index));
  return routine ? routine->name : std::string();
}

}  // namespace quillmate::navigation
