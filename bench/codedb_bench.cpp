#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>

/// What a read of a large project and the work on it cost: 40,000 routines are more than any project of the users has.
namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr int kRoutinesPerModule = 30;
constexpr int kLinesPerRoutine = 20;

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

RoutineRecord Routine(int number, int module) {
  const int line = kLinesPerRoutine * ((number - 1) % kRoutinesPerModule) + 10;
  return {{number},       {module}, RoutineName(number), number % 10 == 0 ? kDeclareSub : kSub,
          1 + number % 2, 1,        Line{line},          Line{line + 15}};
}

void AddModule(CodeDatabase& database, const std::vector<RoutineRecord>& routines) {
  for (const RoutineRecord& routine : routines) database.InsertRoutine(routine);
  const ModuleNumber number = routines.front().module;
  database.InsertModule({number, "Modul" + std::to_string(number.value), kStandard, 700, {}});
}

/// The statements of a read, in its order.
void Fill(CodeDatabase& database, const fs::path& folder, int routines) {
  database.CloseCodeDatabase();
  if (!PrepareCodeDatabase(folder, TemplateFile()).ok) std::abort();
  database.OpenCodeDatabase(folder);
  database.Begin();
  for (int module = 1; module <= routines / kRoutinesPerModule; ++module) {
    std::vector<RoutineRecord> ofModule;
    for (int i = 1; i <= kRoutinesPerModule; ++i) {
      ofModule.push_back(Routine((module - 1) * kRoutinesPerModule + i, module));
    }
    AddModule(database, ofModule);
  }
  database.Commit();
}

void BM_WriteIndex(benchmark::State& state) {
  const ScratchFolder folder;
  CodeDatabase database;
  for (auto _ : state) Fill(database, folder.path, static_cast<int>(state.range(0)));
}
BENCHMARK(BM_WriteIndex)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);

/// Asks an index of 40,000 routines one thing again and again.
template <typename Ask>
void Measure(benchmark::State& state, Ask ask) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, 40000);
  for (auto _ : state) benchmark::DoNotOptimize(ask(database));
}

BENCHMARK_CAPTURE(Measure, DefinitionAcrossModules, [](CodeDatabase& d) {
  return d.RoutineInProject("Lese4711_39001");
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Measure, DefinitionWithUmlaut, [](CodeDatabase& d) {
  return d.RoutineInProject("\334bertrage");
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Measure, DefinitionInModule, [](CodeDatabase& d) {
  return d.RoutineInModule("Lese", {900});
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Measure, RoutineAtLine, [](CodeDatabase& d) {
  return d.RoutineAt({300}, {900});
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Measure, TreeOfRoutines, [](CodeDatabase& d) {
  int count = 0;
  d.TreeRoutines([&](RoutineRecord&&) { ++count; });
  return count;
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Measure, UnusedCandidates, [](CodeDatabase& d) {
  return d.PublicCandidates();
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Measure, WholeIndex, [](CodeDatabase& d) { return d.ReadIndex(); })->Unit(benchmark::kMillisecond);

/// One query per caller found: the length of the module must not count.
BENCHMARK_CAPTURE(Measure, RoutineAtLineOfLongModule,
                  [](CodeDatabase& d) {
                    static const bool moved = [&] {
                      d.ExecuteSql(
                          "UPDATE td_rout SET td_rout.mod_num =1, td_rout.rou_start =[rou_num]*20, td_rout.rou_ende "
                          "=[rou_num]*20+15");
                      return true;
                    }();
                    return moved && d.RoutineAt({400005}, {1});
                  })
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(1000);

void BM_OpenIndex(benchmark::State& state) {
  const ScratchFolder folder;
  CodeDatabase database;
  Fill(database, folder.path, 40000);
  for (auto _ : state) database.OpenCodeDatabase(folder.path);
}
BENCHMARK(BM_OpenIndex)->Unit(benchmark::kMillisecond);

void BM_WriteModuleTexts(benchmark::State& state) {
  const ScratchFolder folder;
  const std::string text(47000, 'x');
  for (auto _ : state) {
    for (int i = 1; i <= 1000; ++i) WriteModuleText(folder.path, {i}, text);
  }
}
BENCHMARK(BM_WriteModuleTexts)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::codedb
