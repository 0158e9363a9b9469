#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/text/windows1252.h>

/// Run on a folder of module files that QUILLMATE_MODULES names (scripts/blow-up writes such), else on the sample's
/// modules. The understanding is made before the clock starts.
namespace quillmate::checks {
namespace {

const symbols::ReferenceIndex& TheIndex() {
  static const symbols::ReferenceIndex index = [] {
    const char* const folder = std::getenv("QUILLMATE_MODULES");
    symbols::Sources sources;
    sources.projects.emplace_back().name = "Projekt";
    sources.projects.back().host = symbols::Host::kExcel;
    for (const auto& entry : std::filesystem::directory_iterator(folder != nullptr ? folder : QUILLMATE_SAMPLE)) {
      std::ifstream file(entry.path(), std::ios::binary);
      symbols::ModuleSource& module = sources.modules.emplace_back();
      module.text = text::Utf8FromCode(std::string(std::istreambuf_iterator<char>(file), {}));
      module.file = entry.path().string();
    }
    return symbols::ReferenceIndex::Build(std::move(sources));
  }();
  return index;
}

std::size_t LineCount() {
  std::size_t lines = 0;
  for (symbols::Index module = 0; module < TheIndex().Modules().size(); ++module) {
    lines += TheIndex().Code(module).lines.size();
  }
  return lines;
}

void Metrics(benchmark::State& state) {
  TheIndex();
  for (auto _ : state) benchmark::DoNotOptimize(Measure(TheIndex(), static_cast<unsigned>(state.range(0))));
  state.counters["lines"] = static_cast<double>(LineCount());
}
BENCHMARK(Metrics)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

void Run(benchmark::State& state, const Selection& selection) {
  TheIndex();
  std::size_t findings = 0;
  for (auto _ : state) {
    findings = RunChecks(TheIndex(), selection, static_cast<unsigned>(state.range(0))).size();
  }
  state.counters["findings"] = static_cast<double>(findings);
}

void AllOfThem(benchmark::State& state) {
  Selection all;
  for (const Check& check : AllChecks()) all.Add(check.number);
  Run(state, all);
}
BENCHMARK(AllOfThem)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

void Duplicates(benchmark::State& state) {
  Selection copies;
  copies.Clear();
  copies.Add(CheckId::kDuplicate);
  copies.Add(CheckId::kNearDuplicate);
  Run(state, copies);
}
BENCHMARK(Duplicates)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quillmate::checks
