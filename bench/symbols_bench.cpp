#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/reference_index.h>
#include <quillmate/symbols/unused.h>
#include <quillmate/text/windows1252.h>

/// Run on the modules of samples/Lagerverwaltung, over and over, each copy a project of its own, or on the folder of
/// module files that QUILLMATE_MODULES names, which is one project (scripts/blow-up writes such).
namespace quillmate::symbols {
namespace {

std::vector<ModuleSource> ReadModules() {
  const char* const folder = std::getenv("QUILLMATE_MODULES");
  std::vector<ModuleSource> modules;
  for (const auto& entry : std::filesystem::directory_iterator(folder != nullptr ? folder : QUILLMATE_SAMPLE)) {
    std::ifstream file(entry.path(), std::ios::binary);
    ModuleSource& module = modules.emplace_back();
    module.text = text::Utf8FromCode(std::string(std::istreambuf_iterator<char>(file), {}));
    module.file = entry.path().string();
  }
  return modules;
}

/// `megabytes` of the modules; with a folder of its own the whole of it, once.
Sources MakeSources(std::size_t megabytes) {
  const std::vector<ModuleSource> modules = ReadModules();
  const bool once = std::getenv("QUILLMATE_MODULES") != nullptr;
  Sources sources;
  for (std::size_t bytes = 0; sources.projects.empty() || (!once && bytes < megabytes << 20U);) {
    const auto project = static_cast<Index>(sources.projects.size());
    sources.projects.emplace_back().name = "Projekt" + std::to_string(project);
    for (const ModuleSource& module : modules) {
      bytes += module.text.size();
      sources.modules.push_back(module);
      sources.modules.back().project = project;
    }
  }
  return sources;
}

std::size_t BytesIn(const Sources& sources) {
  std::size_t bytes = 0;
  for (const ModuleSource& module : sources.modules) bytes += module.text.size();
  return bytes;
}

/// Front end and binding, to everything that can be asked.
void Build(benchmark::State& state) {
  const Sources sources = MakeSources(static_cast<std::size_t>(state.range(0)));
  const auto threads = static_cast<unsigned>(state.range(1));
  std::size_t symbols = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Sources copy = sources;
    state.ResumeTiming();
    const ReferenceIndex index = ReferenceIndex::Build(std::move(copy), {.threads = threads});
    symbols = index.SymbolCount();
    state.PauseTiming();  // giving the memory back is no part of it
    { const ReferenceIndex gone = std::move(const_cast<ReferenceIndex&>(index)); }
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(BytesIn(sources)));
  state.counters["symbols"] = static_cast<double>(symbols);
}
BENCHMARK(Build)->Args({1, 1})->Args({40, 1})->Args({40, 2})->Unit(benchmark::kMillisecond)->UseRealTime();

/// CPU time of one thread for what `Build` measures, in seconds for each megabyte.
double SecondsPerMegabyte(const Sources& sources) {
  Sources copy = sources;
  const std::clock_t start = std::clock();
  const ReferenceIndex index = ReferenceIndex::Build(std::move(copy), {.threads = 1});
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  return seconds / (static_cast<double>(BytesIn(sources)) / 1e6);
}

/// What a megabyte costs among 40 and alone: the best of each, taken in turns, so that a busy machine slows both.
void CostPerMegabyte(benchmark::State& state) {
  const Sources few = MakeSources(1), many = MakeSources(40);
  constexpr int kFewEach = 10;
  double ofFew = 1e9, ofMany = 1e9;
  for (auto _ : state) {
    for (int i = 0; i < kFewEach; ++i) ofFew = std::min(ofFew, SecondsPerMegabyte(few));
    ofMany = std::min(ofMany, SecondsPerMegabyte(many));
  }
  state.counters["msAlone"] = ofFew * 1e3;
  state.counters["msAmong40"] = ofMany * 1e3;
  state.counters["ratio"] = ofMany / ofFew;
}
BENCHMARK(CostPerMegabyte)->Unit(benchmark::kMillisecond)->Iterations(6);

const ReferenceIndex& BigIndex() {
  static const ReferenceIndex index = ReferenceIndex::Build(MakeSources(40));
  return index;
}

/// One symbol after the other: an answer each.
void References(benchmark::State& state) {
  const ReferenceIndex& index = BigIndex();
  SymbolId symbol = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(index.ReferencesTo(symbol).size());
    symbol = static_cast<SymbolId>((symbol + 7919) % index.SymbolCount());
  }
}
BENCHMARK(References)->Unit(benchmark::kMicrosecond);

void NameAtPlace(benchmark::State& state) {
  const ReferenceIndex& index = BigIndex();
  Index module = 0;
  for (auto _ : state) {
    const auto lines = static_cast<std::uint32_t>(index.Code(module).lines.size());
    benchmark::DoNotOptimize(index.NameAt(module, lines / 2 + 1, 5));
    module = static_cast<Index>((module + 1) % index.Modules().size());
  }
}
BENCHMARK(NameAtPlace)->Unit(benchmark::kMicrosecond);

void Hierarchy(benchmark::State& state) {
  const ReferenceIndex& index = BigIndex();
  SymbolId symbol = 0;
  for (auto _ : state) {
    do symbol = static_cast<SymbolId>((symbol + 1) % index.SymbolCount());
    while (!IsCallable(index.SymbolAt(symbol).kind));
    benchmark::DoNotOptimize(CallHierarchy(index, symbol, CallDirection::kCallers, 3).size());
  }
}
BENCHMARK(Hierarchy)->Unit(benchmark::kMicrosecond);

void AllUnused(benchmark::State& state) {
  const ReferenceIndex& index = BigIndex();
  for (auto _ : state) benchmark::DoNotOptimize(FindUnused(index).size());
}
BENCHMARK(AllUnused)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::symbols
