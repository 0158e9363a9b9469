#include <quillmate/navigation/caret_tracking.h>

namespace quillmate::navigation {
namespace {

std::string RoutineAtLineQuery(long line, int moduleNumber) {
  const std::string number = std::to_string(line);
  return "SELECT td_rout.rou_name, "
         "  td_rout.rou_start, "
         "  td_rout.rou_ende"
         " FROM td_rout"
         " WHERE (((td_rout.rou_start)<=" +
         number + ") AND ((td_rout.rou_ende)>=" + number + ") AND ((td_rout.mod_num)=" + std::to_string(moduleNumber) +
         "));";
}

long CaretLine(const CodeView& view) noexcept { return static_cast<long>(view.LineFromChar(view.SelStart())); }

}  // namespace

std::optional<RoutineSpan> RoutineAtLine(codedb::CodeDatabase& database, long line, int moduleNumber) {
  codedb::Recordset routine = database.OpenRecordset(RoutineAtLineQuery(line, moduleNumber));
  if (!routine.Next()) return std::nullopt;
  return RoutineSpan{routine.Text(0), static_cast<long>(routine.Number(1).value_or(0)),
                     static_cast<long>(routine.Number(2).value_or(0))};
}

std::optional<std::string> CaretTracker::Track(codedb::CodeDatabase& database, const CodeView& view, int index) {
  if (view.Length() == 0 || CaretLine(view) == lastLine_) return std::nullopt;
  return Refresh(database, view, index);
}

std::string CaretTracker::Refresh(codedb::CodeDatabase& database, const CodeView& view, int index) {
  lastLine_ = CaretLine(view);
  const std::optional<RoutineSpan> routine = RoutineAtLine(database, lastLine_ + 1, index + 1);
  return routine ? routine->name : std::string();
}

}  // namespace quillmate::navigation
