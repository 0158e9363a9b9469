#include <quillmate/navigation/caret_tracking.h>

namespace quillmate::navigation {
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
