#include <unordered_map>

#include <quillmate/codedb/records.h>

namespace quillmate::codedb {
namespace {

int SmallNumber(const Recordset& rows, int column) { return static_cast<int>(rows.Number(column).value_or(0)); }

RoutineRecord ReadRoutine(const Recordset& rows) {
  RoutineRecord routine;
  routine.number = rows.Number(0).value_or(0);
  routine.moduleNumber = rows.Number(1).value_or(0);
  routine.name = rows.Text(2);
  routine.kind = SmallNumber(rows, 3);
  routine.visibility = SmallNumber(rows, 4);
  routine.headerLines = SmallNumber(rows, 5);
  routine.start = rows.Number(6);
  routine.end = rows.Number(7);
  return routine;
}

std::vector<ModuleRecord> ReadModules(CodeDatabase& database) {
  std::vector<ModuleRecord> modules;
  Recordset rows =
      database.OpenRecordset("SELECT mod_num, mod_name, mod_typ, mod_zeilen FROM td_mod ORDER BY mod_num;");
  while (rows.Next()) {
    modules.push_back({rows.Number(0).value_or(0), rows.Text(1), SmallNumber(rows, 2), rows.Number(3).value_or(0), {}});
  }
  return modules;
}

}  // namespace

std::vector<ModuleRecord> ReadIndex(CodeDatabase& database) {
  std::vector<ModuleRecord> modules = ReadModules(database);
  std::unordered_map<std::int64_t, ModuleRecord*> byNumber;
  for (ModuleRecord& module : modules) byNumber.emplace(module.number, &module);
  Recordset rows = database.OpenRecordset(
      "SELECT rou_num, mod_num, rou_name, rou_typ, rou_open, anz_dec_zeilen, rou_start, rou_ende"
      " FROM td_rout ORDER BY rou_num;");
  while (rows.Next()) {
    const auto module = byNumber.find(rows.Number(1).value_or(0));
    if (module != byNumber.end()) module->second->routines.push_back(ReadRoutine(rows));
  }
  return modules;
}

}  // namespace quillmate::codedb
