#include <algorithm>
#include <functional>
#include <numeric>

#include <quillmate/navigation/routine_lines.h>

namespace quillmate::navigation {
namespace {

/// The condition is that of the question for one line, so that the database walks the same way through its records.
std::string RoutinesQuery(int moduleNumber) {
  return "SELECT td_rout.rou_num, td_rout.rou_name, td_rout.rou_typ, td_rout.rou_open, td_rout.rou_start, "
         "td_rout.rou_ende FROM td_rout"
         " WHERE (((td_rout.rou_start)<=2147483647) AND ((td_rout.rou_ende)>=1) AND ((td_rout.mod_num)=" +
         std::to_string(moduleNumber) + "));";
}

}  // namespace

std::vector<RoutineLines> ReadRoutineLines(codedb::CodeDatabase& database, int moduleNumber) {
  std::vector<RoutineLines> routines;
  codedb::Recordset rows = database.OpenRecordset(RoutinesQuery(moduleNumber));
  while (rows.Next()) {
    routines.push_back({.number = rows.Number(0).value_or(0),
                        .name = rows.Text(1),
                        .kind = static_cast<int>(rows.Number(2).value_or(0)),
                        .visibility = static_cast<int>(rows.Number(3).value_or(0)),
                        .start = static_cast<long>(rows.Number(4).value_or(0)),
                        .end = static_cast<long>(rows.Number(5).value_or(0))});
  }
  return routines;
}

LineWalk::LineWalk(const std::vector<RoutineLines>& routines) : routines_(routines), byStart_(routines.size()) {
  std::iota(byStart_.begin(), byStart_.end(), 0);
  std::ranges::stable_sort(byStart_, {}, [&](int i) { return routines[static_cast<std::size_t>(i)].start; });
}

int LineWalk::At(long line) {
  const auto routine = [&](int i) -> const RoutineLines& { return routines_[static_cast<std::size_t>(i)]; };
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

}  // namespace quillmate::navigation
