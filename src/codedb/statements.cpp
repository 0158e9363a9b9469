// All statements of the program, and what goes in and out of them.

#include <charconv>
#include <unordered_map>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>

#include "connection_p.h"

namespace quillmate::codedb {
namespace {

constexpr std::string_view kInsertModule =
    "INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) "
    "SELECT '?' AS AX1, '?' AS AX2, '?' AS AX3, '?' AS AX4";

constexpr std::string_view kInsertRoutine =
    "INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num,rou_start,rou_ende) "
    "SELECT '?' AS AX1, '?' AS AX2, '?' AS AX3, '?' AS AX4, '?' AS AX5, '?' AS AX6, ? AS AX7, ? AS AX8";

constexpr std::string_view kModules = "SELECT mod_num, mod_name, mod_typ, mod_zeilen FROM td_mod ORDER BY mod_num;";

constexpr std::string_view kRoutines =
    "SELECT rou_num, mod_num, rou_name, rou_typ, rou_open, anz_dec_zeilen, rou_start, rou_ende"
    " FROM td_rout ORDER BY rou_num;";

constexpr std::string_view kModuleCount = "SELECT Count(mod_num) AS Anzahl FROM td_mod;";

constexpr std::string_view kTreeModules =
    "SELECT td_Mod.mod_typ, "
    "  td_Mod.mod_name, "
    "  td_Mod.mod_num"
    " FROM td_Mod"
    " ORDER BY td_Mod.mod_typ, "
    "  td_Mod.mod_name;";

constexpr std::string_view kTreeRoutines =
    "SELECT 'M' & [mod_num] AS mnum, "
    "  'R' & [rou_num] AS rnum, "
    "  td_rout.rou_name, "
    "  'R' & [rou_typ] & 'O' & [rou_open] AS iflag"
    " FROM td_rout"
    " ORDER BY td_rout.mod_num, "
    "  td_rout.rou_name;";

constexpr std::string_view kStarts = "SELECT rou_num, rou_start FROM td_rout;";

constexpr std::string_view kModule =
    "SELECT td_Mod.mod_typ, "
    "  td_Mod.mod_name, "
    "  td_Mod.mod_num"
    " FROM td_Mod"
    " Where td_mod.mod_num = ?";

constexpr std::string_view kModulesNamed =
    "SELECT mod_num, mod_name, mod_typ, mod_zeilen FROM td_mod WHERE mod_name='?' ORDER BY mod_num;";

constexpr std::string_view kStartOf =
    "SELECT td_rout.rou_start, "
    "  td_rout.rou_num"
    " FROM td_rout"
    " WHERE (((td_rout.rou_num)=?));";

constexpr std::string_view kRoutineInModule =
    "SELECT td_rout.rou_start, td_rout.rou_open From td_rout "
    "WHERE (((td_rout.rou_name)='?') AND ((td_rout.mod_num)=?));";

constexpr std::string_view kRoutineInProject =
    "SELECT td_rout.rou_start, "
    "  td_rout.mod_num, "
    "  td_mod.mod_name, td_rout.rou_open"
    " FROM td_rout INNER JOIN td_mod ON td_rout.mod_num = td_mod.mod_num"
    " WHERE (((td_rout.rou_name)='?') AND ((td_rout.rou_open)<>2));";

constexpr std::string_view kRoutinesNamed =
    "SELECT td_rout.rou_name, "
    "  td_rout.mod_num, "
    "  td_rout.rou_typ, "
    "  td_rout.rou_open, td_rout.rou_num"
    " FROM td_rout"
    " WHERE (((td_rout.rou_name)='?') AND ((td_rout.mod_num)=?));";

constexpr std::string_view kRoutineAt =
    "SELECT td_rout.rou_name, "
    "  td_rout.rou_start, "
    "  td_rout.rou_ende"
    " FROM td_rout"
    " WHERE (((td_rout.rou_start)<=?) AND ((td_rout.rou_ende)>=?) AND ((td_rout.mod_num)=?));";

/// The condition is that of the question for one line, so that the database walks the same way through its records.
constexpr std::string_view kRoutinesWithLines =
    "SELECT td_rout.rou_num, td_rout.rou_name, td_rout.rou_typ, td_rout.rou_open, td_rout.rou_start, "
    "td_rout.rou_ende FROM td_rout"
    " WHERE (((td_rout.rou_start)<=2147483647) AND ((td_rout.rou_ende)>=1) AND ((td_rout.mod_num)=?));";

constexpr std::string_view kLastDeclarationLine =
    "SELECT Min([rou_start])-1 AS Letzte"
    " FROM td_rout"
    " WHERE (([mod_num]=?));";

constexpr std::string_view kPublicCandidates =
    "SELECT td_rout.rou_name, "
    "  Count(td_rout.rou_name) AS Anzahlvonrou_name"
    " FROM td_rout"
    " WHERE (((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)=1))"
    " GROUP BY td_rout.rou_name"
    " HAVING (((Count(td_rout.rou_name))<2));";

constexpr std::string_view kPrivateCandidates =
    "SELECT td_rout.rou_name"
    " FROM td_rout"
    " WHERE (((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)>1) AND "
    "((td_rout.mod_num)=?));";

/// The number after the letter of a key that a query has put together; moves `key` after it. 0 when the column had
/// none.
std::int32_t TakeNumber(std::string_view& key) {
  key.remove_prefix(std::min<std::size_t>(key.size(), 1));
  std::int32_t number = 0;
  const char* const end = std::from_chars(key.data(), key.data() + key.size(), number).ptr;
  key.remove_prefix(static_cast<std::size_t>(end - key.data()));
  return number;
}

JetValue ValueOf(const std::optional<Line>& line) { return line ? JetValue(line->value) : JetValue(kNull); }

}  // namespace

/// The records of a form's statement, which is free again when this goes.
class CodeDatabase::Rows {
 public:
  Rows(Connection& connection, sqlite3_stmt* statement) : connection_(connection), statement_(statement) {}
  ~Rows() { sqlite3_reset(statement_); }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  bool Next() {
    const int step = sqlite3_step(statement_);
    if (step != SQLITE_ROW && step != SQLITE_DONE) connection_.Fail({});
    return step == SQLITE_ROW;
  }

  std::string Text(int column) const { return ColumnText(statement_, column); }
  std::string_view KeyText(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text == nullptr ? std::string_view() : std::string_view(text);
  }

  /// An open index holds no number of more than 32 bits.
  std::int32_t Number(int column) const { return sqlite3_column_int(statement_, column); }
  std::optional<Line> LineNumber(int column) const {
    if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return std::nullopt;
    return Line{Number(column)};
  }

 private:
  Connection& connection_;
  sqlite3_stmt* statement_;
};

void CodeDatabase::Execute(std::string_view form, std::initializer_list<JetValue> values) {
  Connection& connection = state_->Opened();
  sqlite3_stmt* const statement = connection.Bind(form, values, Binding::Borrowed);
  const bool done = sqlite3_step(statement) == SQLITE_DONE;
  if (!done) {
    const Rows reset(connection, statement);
    connection.Fail(FillJetForm(form, values));
  }
  sqlite3_reset(statement);
}

CodeDatabase::Rows CodeDatabase::Query(std::string_view form, std::initializer_list<JetValue> values) {
  Connection& connection = state_->Opened();
  return {connection, connection.Bind(form, values, Binding::Copied)};
}

void CodeDatabase::InsertModule(const ModuleRecord& module) {
  Execute(kInsertModule, {module.number.value, module.name, module.kind, module.lines});
}

void CodeDatabase::InsertRoutine(const RoutineRecord& routine) {
  Execute(kInsertRoutine, {routine.kind, routine.visibility, routine.headerLines, routine.name, routine.number.value,
                           routine.module.value, ValueOf(routine.start), ValueOf(routine.end)});
}

std::vector<ModuleRecord> CodeDatabase::Modules() {
  std::vector<ModuleRecord> modules;
  Rows rows = Query(kModules);
  while (rows.Next()) modules.push_back({{rows.Number(0)}, rows.Text(1), rows.Number(2), rows.Number(3), {}});
  return modules;
}

std::vector<ModuleRecord> CodeDatabase::ReadIndex() {
  std::vector<ModuleRecord> modules = Modules();
  std::unordered_map<ModuleNumber, ModuleRecord*> byNumber;
  for (ModuleRecord& module : modules) byNumber.emplace(module.number, &module);
  Rows rows = Query(kRoutines);
  while (rows.Next()) {
    const auto module = byNumber.find({rows.Number(1)});
    if (module == byNumber.end()) continue;
    module->second->routines.push_back({.number = {rows.Number(0)},
                                        .module = {rows.Number(1)},
                                        .name = rows.Text(2),
                                        .kind = rows.Number(3),
                                        .visibility = rows.Number(4),
                                        .headerLines = rows.Number(5),
                                        .start = rows.LineNumber(6),
                                        .end = rows.LineNumber(7)});
  }
  return modules;
}

int CodeDatabase::ModuleCount() {
  Rows rows = Query(kModuleCount);
  return rows.Next() ? rows.Number(0) : 0;
}

std::vector<ModuleRecord> CodeDatabase::TreeModules() {
  std::vector<ModuleRecord> modules;
  Rows rows = Query(kTreeModules);
  while (rows.Next()) modules.push_back({{rows.Number(2)}, rows.Text(1), rows.Number(0), 0, {}});
  return modules;
}

void CodeDatabase::TreeRoutines(const std::function<void(RoutineRecord&&)>& visit) {
  Rows rows = Query(kTreeRoutines);
  while (rows.Next()) {
    std::string_view module = rows.KeyText(0);
    std::string_view number = rows.KeyText(1);
    std::string_view image = rows.KeyText(3);
    RoutineRecord routine;
    routine.number = {TakeNumber(number)};
    routine.module = {TakeNumber(module)};
    routine.name = rows.Text(2);
    routine.kind = TakeNumber(image);
    routine.visibility = TakeNumber(image);
    visit(std::move(routine));
  }
}

void CodeDatabase::Starts(const std::function<void(RoutineNumber, Line)>& visit) {
  Rows rows = Query(kStarts);
  while (rows.Next()) visit({rows.Number(0)}, rows.LineNumber(1).value_or(Line{}));
}

std::optional<ModuleRecord> CodeDatabase::Module(ModuleNumber number) {
  Rows rows = Query(kModule, {number.value});
  if (!rows.Next()) return std::nullopt;
  return ModuleRecord{{rows.Number(2)}, rows.Text(1), rows.Number(0), 0, {}};
}

std::vector<ModuleRecord> CodeDatabase::ModulesNamed(std::string_view name) {
  std::vector<ModuleRecord> modules;
  Rows rows = Query(kModulesNamed, {name});
  while (rows.Next()) modules.push_back({{rows.Number(0)}, rows.Text(1), rows.Number(2), rows.Number(3), {}});
  return modules;
}

std::vector<RoutineRecord> CodeDatabase::RoutinesNamed(std::string_view name, ModuleNumber module) {
  std::vector<RoutineRecord> routines;
  Rows rows = Query(kRoutinesNamed, {name, module.value});
  while (rows.Next()) {
    RoutineRecord& routine = routines.emplace_back();
    routine.name = rows.Text(0);
    routine.module = {rows.Number(1)};
    routine.kind = rows.Number(2);
    routine.visibility = rows.Number(3);
    routine.number = {rows.Number(4)};
  }
  return routines;
}

std::optional<Line> CodeDatabase::StartOf(RoutineNumber number) {
  Rows rows = Query(kStartOf, {number.value});
  if (!rows.Next()) return std::nullopt;
  return rows.LineNumber(0).value_or(Line{});
}

std::optional<RoutineRecord> CodeDatabase::RoutineInModule(std::string_view name, ModuleNumber module) {
  Rows rows = Query(kRoutineInModule, {name, module.value});
  if (!rows.Next()) return std::nullopt;
  RoutineRecord routine;
  routine.module = module;
  routine.start = rows.LineNumber(0);
  routine.visibility = rows.Number(1);
  return routine;
}

std::optional<std::pair<RoutineRecord, std::string>> CodeDatabase::RoutineInProject(std::string_view name) {
  Rows rows = Query(kRoutineInProject, {name});
  if (!rows.Next()) return std::nullopt;
  RoutineRecord routine;
  routine.start = rows.LineNumber(0);
  routine.module = {rows.Number(1)};
  routine.visibility = rows.Number(3);
  return std::pair(std::move(routine), rows.Text(2));
}

std::optional<RoutineRecord> CodeDatabase::RoutineAt(Line line, ModuleNumber module) {
  Rows rows = Query(kRoutineAt, {line.value, line.value, module.value});
  if (!rows.Next()) return std::nullopt;
  RoutineRecord routine;
  routine.module = module;
  routine.name = rows.Text(0);
  routine.start = rows.LineNumber(1);
  routine.end = rows.LineNumber(2);
  return routine;
}

std::vector<RoutineRecord> CodeDatabase::RoutinesWithLines(ModuleNumber module) {
  std::vector<RoutineRecord> routines;
  Rows rows = Query(kRoutinesWithLines, {module.value});
  while (rows.Next()) {
    routines.push_back({.number = {rows.Number(0)},
                        .module = module,
                        .name = rows.Text(1),
                        .kind = rows.Number(2),
                        .visibility = rows.Number(3),
                        .headerLines = 0,
                        .start = rows.LineNumber(4),
                        .end = rows.LineNumber(5)});
  }
  return routines;
}

std::optional<Line> CodeDatabase::LastDeclarationLine(ModuleNumber module) {
  Rows rows = Query(kLastDeclarationLine, {module.value});
  return rows.Next() ? rows.LineNumber(0) : std::nullopt;
}

std::vector<std::string> CodeDatabase::PublicCandidates() {
  std::vector<std::string> names;
  Rows rows = Query(kPublicCandidates);
  while (rows.Next()) names.push_back(rows.Text(0));
  return names;
}

std::vector<std::string> CodeDatabase::PrivateCandidates(ModuleNumber module) {
  std::vector<std::string> names;
  Rows rows = Query(kPrivateCandidates, {module.value});
  while (rows.Next()) names.push_back(rows.Text(0));
  return names;
}

}  // namespace quillmate::codedb
