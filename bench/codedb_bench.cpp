#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>

/// What a read of a large project and the work on it cost: 40,000 routines are more than any project of the users has.
namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr int kRoutinesPerModule = 30;

/// A folder of its own for each benchmark, gone with it.
struct ScratchFolder {
  fs::path path = fs::temp_directory_path() / "quillmate_codedb_bench";
  ScratchFolder() { fs::create_directories(path); }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
};

/// The build puts the template beside the programs, the benchmarks into a folder next to them.
fs::path TemplateFile() {
  return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "bin" / kTemplateFile;
}

std::string RoutineName(int number) {
  static const char* const kStems[] = {"Berechne", "Lese", "Schreibe", "cmdOK_Click", "Pr\374fe", "Worksheet_Change"};
  const int mixed = static_cast<int>(static_cast<unsigned>(number) * 2654435761U % 99991U);
  return kStems[mixed % 6] + std::to_string(mixed) + "_" + std::to_string(number);
}

void AddInsert(int number, int module, std::vector<std::string>& statements) {
  statements.push_back("INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num) SELECT '" +
                       std::to_string(number % 10 == 0 ? 11 : 1) + "' AS AX1, '" + std::to_string(1 + number % 2) +
                       "' AS AX2, '1' AS AX3, '" + RoutineName(number) + "' AS AX4, '" + std::to_string(number) +
                       "' AS AX5, '" + std::to_string(module) + "' AS AX6");
}

void AddLine(const char* field, int line, int number, std::vector<std::string>& statements) {
  statements.push_back(std::string("UPDATE td_rout SET td_rout.") + field + " =" + std::to_string(line) +
                       " WHERE (([rou_num]=" + std::to_string(number) + "));");
}

void AddModule(int module, std::vector<std::string>& statements) {
  const int first = (module - 1) * kRoutinesPerModule + 1;
  for (int i = 0; i < kRoutinesPerModule; ++i) AddInsert(first + i, module, statements);
  for (int i = 0; i < kRoutinesPerModule; ++i) {
    AddLine("rou_start", 10 + 20 * i, first + i, statements);
    AddLine("rou_ende", 25 + 20 * i, first + i, statements);
  }
  const std::string number = std::to_string(module);
  statements.push_back(
      "UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE (([rou_typ]>10) And (mod_num=" +
      number + "));");
  statements.push_back("INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) SELECT '" + number +
                       "' AS AX1, 'Modul" + number + "' AS AX2, '2' AS AX3, '700' AS AX4");
}

/// The statements of a read, in the scanner's order.
std::vector<std::string> StatementsOfRead(int routines) {
  std::vector<std::string> statements;
  for (int module = 1; module <= routines / kRoutinesPerModule; ++module) AddModule(module, statements);
  return statements;
}

void Fill(CodeDatabase& database, const fs::path& folder, const std::vector<std::string>& statements) {
  database.Close();
  if (!PrepareCodeDatabase(folder, TemplateFile()).ok) std::abort();
  database.Open(DatabasePath(folder));
  database.Begin();
  for (const std::string& statement : statements) database.ExecuteSql(statement);
  database.Commit();
}

void BM_WriteIndex(benchmark::State& state) {
  const ScratchFolder folder;
  const std::vector<std::string> statements = StatementsOfRead(static_cast<int>(state.range(0)));
  CodeDatabase database;
  for (auto _ : state) Fill(database, folder.path, statements);
  state.counters["statements"] = static_cast<double>(statements.size());
}
BENCHMARK(BM_WriteIndex)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);

/// Runs one query on an index of 40,000 routines again and again, to its last record.
void RunQuery(benchmark::State& state, const char* query) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, StatementsOfRead(40000));
  std::size_t records = 0;
  for (auto _ : state) {
    Recordset rows = database.OpenRecordset(query);
    for (records = 0; rows.Next(); ++records) benchmark::DoNotOptimize(rows.Text(0));
  }
  state.counters["records"] = static_cast<double>(records);
}

BENCHMARK_CAPTURE(RunQuery, DefinitionAcrossModules,
                  "SELECT td_rout.rou_start,   td_rout.mod_num,   td_mod.mod_name, td_rout.rou_open FROM td_rout INNER "
                  "JOIN td_mod ON td_rout.mod_num = td_mod.mod_num WHERE (((td_rout.rou_name)='Lese4711_39001') AND "
                  "((td_rout.rou_open)<>2));")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunQuery, DefinitionWithUmlaut,
                  "SELECT td_rout.rou_start,   td_rout.mod_num,   td_mod.mod_name, td_rout.rou_open FROM td_rout INNER "
                  "JOIN td_mod ON td_rout.mod_num = td_mod.mod_num WHERE (((td_rout.rou_name)='\334bertrage') AND "
                  "((td_rout.rou_open)<>2));")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunQuery, DefinitionInModule,
                  "SELECT td_rout.rou_start, td_rout.rou_open From td_rout WHERE (((td_rout.rou_name)='Lese') AND "
                  "((td_rout.mod_num)=900));")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(RunQuery, RoutineAtLine,
                  "SELECT td_rout.rou_name,   td_rout.rou_start,   td_rout.rou_ende FROM td_rout WHERE "
                  "(((td_rout.rou_start)<=300) AND ((td_rout.rou_ende)>=300) AND ((td_rout.mod_num)=900));")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(
    RunQuery, TreeOfRoutines,
    "SELECT 'M' & [mod_num] AS mnum,   'R' & [rou_num] AS rnum,   td_rout.rou_name,   'R' & [rou_typ] & 'O' "
    "& [rou_open] AS iflag FROM td_rout ORDER BY td_rout.mod_num,   td_rout.rou_name;")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(
    RunQuery, UnusedCandidates,
    "SELECT td_rout.rou_name,   Count(td_rout.rou_name) AS Anzahlvonrou_name FROM td_rout WHERE "
    "(((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)=1)) GROUP BY td_rout.rou_name "
    "HAVING (((Count(td_rout.rou_name))<2));")
    ->Unit(benchmark::kMillisecond);

/// One query per caller found: the length of the module must not count.
void BM_RoutineAtLineOfLongModule(benchmark::State& state) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, StatementsOfRead(40000));
  database.ExecuteSql(
      "UPDATE td_rout SET td_rout.mod_num =1, td_rout.rou_start =[rou_num]*20, td_rout.rou_ende =[rou_num]*20+15");
  for (auto _ : state) {
    Recordset rows = database.OpenRecordset(
        "SELECT td_rout.rou_name,   td_rout.rou_start,   td_rout.rou_ende FROM td_rout WHERE "
        "(((td_rout.rou_start)<=400005) AND ((td_rout.rou_ende)>=400005) AND ((td_rout.mod_num)=1));");
    if (!rows.Next()) state.SkipWithError("no routine at the line");
  }
}
BENCHMARK(BM_RoutineAtLineOfLongModule)->Unit(benchmark::kMicrosecond);

void BM_OpenIndex(benchmark::State& state) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, StatementsOfRead(40000));
  for (auto _ : state) database.Open(DatabasePath(folder.path));
}
BENCHMARK(BM_OpenIndex)->Unit(benchmark::kMillisecond);

void BM_ReadIndex(benchmark::State& state) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, StatementsOfRead(40000));
  for (auto _ : state) benchmark::DoNotOptimize(ReadIndex(database));
}
BENCHMARK(BM_ReadIndex)->Unit(benchmark::kMillisecond);

void BM_WriteModuleTexts(benchmark::State& state) {
  const ScratchFolder folder;
  const std::string text(47000, 'x');
  for (auto _ : state) {
    for (int i = 1; i <= 1000; ++i) WriteModuleText(folder.path, i, text);
  }
}
BENCHMARK(BM_WriteModuleTexts)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::codedb
