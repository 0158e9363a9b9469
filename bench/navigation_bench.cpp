#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/code_view.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/routine_lines.h>
#include <quillmate/navigation/search.h>

#include "marked_code.h"

namespace quillmate::navigation {
namespace {

std::string CodeOf(const benchmark::State& state) {
  return bench::MarkedCode(static_cast<std::size_t>(state.range(0)) * 1'000'000);
}

void Strip(benchmark::State& state) {
  const std::string code = CodeOf(state);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(StripMarkers(code));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(code.size()));
}

void OpenView(benchmark::State& state) {
  const std::string text = StripMarkers(CodeOf(state)).text;
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(CodeView(text).LineCount());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void GoToEveryLine(benchmark::State& state) {
  CodeView view(StripMarkers(CodeOf(state)).text);
  const long lines = static_cast<long>(view.LineCount());
  for ([[maybe_unused]] auto round : state) {
    for (std::int32_t line = 1; line <= lines + 1; ++line) view.GoToLine({line});
  }
  state.SetItemsProcessed(state.iterations() * lines);
}

/// A saved project of any size, named by the environment variable QUILLMATE_PROJECT: the folder that
/// "quillmate-cli index" made of what scripts/blow-up wrote, for instance.
struct SavedProject {
  explicit SavedProject(benchmark::State& state) {
    const char* const named = std::getenv("QUILLMATE_PROJECT");
    if (named == nullptr) {
      state.SkipWithError("QUILLMATE_PROJECT names no project folder");
      return;
    }
    folder = named;
    database.OpenCodeDatabase(folder);
    FillModuleNodes(database, tree);
    views.Load(folder, tree.moduleCount);
    texts.Load(folder, tree.moduleCount);
  }

  std::filesystem::path folder;
  codedb::CodeDatabase database;
  ProjectTree tree;
  CodeViews views;
  ProjectTexts texts;
};

/// The first search of a project reads its texts; the benchmarks tell what every later one takes.
void CallersOf(benchmark::State& state, const char* name) {
  SavedProject project(state);
  if (project.texts.Count() > 0) ScanCallers(project.database, project.texts, name, {1}, {project.texts.Count()});
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(ScanCallers(project.database, project.texts, name, {1}, {project.texts.Count()}));
  }
}

void SearchProject(benchmark::State& state, const char* searched) {
  SavedProject project(state);
  for (int i = 0; i < project.views.Count(); ++i) project.views.View({i});
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(AllHits(project.database, project.views, {std::string(searched)}));
  }
}

void FindUnknownDefinition(benchmark::State& state) {
  SavedProject project(state);
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(FindDefinition(project.database, {0}, "GibtEsNicht"));
  }
}

void TrackEveryLine(benchmark::State& state) {
  SavedProject project(state);
  CodeView& view = project.views.View({0});
  CaretTracker tracker;
  for ([[maybe_unused]] auto round : state) {
    for (std::size_t line = 0; line < view.LineCount(); ++line) {
      view.Select(view.LineStart(line), 0);
      benchmark::DoNotOptimize(tracker.Track(project.database, view, {0}));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(view.LineCount()));
}

BENCHMARK(Strip)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenView)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(GoToEveryLine)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CallersOf, rare, "GibtEsNicht")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CallersOf, common, "Fehler")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SearchProject, rare, "gibtesnicht")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SearchProject, common, "name")->Unit(benchmark::kMillisecond);
BENCHMARK(FindUnknownDefinition)->Unit(benchmark::kMillisecond);
BENCHMARK(TrackEveryLine)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::navigation
