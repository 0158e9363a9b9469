#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <quillmate/language/parse.h>
#include <quillmate/text/windows1252.h>

/// Run on the modules of samples/Lagerverwaltung, over and over in one module, or on the folder of module files that
/// QUILLMATE_MODULES names (scripts/blow-up writes such).
namespace quillmate::language {
namespace {

std::vector<std::string> ReadModules() {
  const char* const folder = std::getenv("QUILLMATE_MODULES");
  std::vector<std::string> texts;
  for (const auto& entry : std::filesystem::directory_iterator(folder != nullptr ? folder : QUILLMATE_SAMPLE)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string code(std::istreambuf_iterator<char>(file), {});
    texts.push_back(text::Utf8FromCode(code));
  }
  return texts;
}

/// One module of `megabytes` times the same megabyte, so that sizes compare.
std::string OneModule(std::size_t megabytes) {
  std::string unit;
  const std::vector<std::string> texts = ReadModules();
  for (std::size_t i = 0; unit.size() < std::size_t{1} << 20; i = (i + 1) % texts.size()) {
    const std::size_t first = texts[i].find("\nOption");
    unit += first == std::string::npos ? texts[i] : texts[i].substr(first + 1);
  }
  std::string code;
  code.reserve(megabytes * unit.size());
  for (; megabytes > 0; --megabytes) code += unit;
  return code;
}

void OneLargeModule(benchmark::State& state) {
  const std::string code = OneModule(static_cast<std::size_t>(state.range(0)));
  Workspace workspace;
  Module module;
  ParseModule(code, {}, workspace, module);
  for (auto _ : state) {
    ParseModule(code, {}, workspace, module);
    benchmark::DoNotOptimize(module.uses.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(code.size()));
  state.counters["uses"] = static_cast<double>(module.uses.size());
  state.counters["routines"] = static_cast<double>(module.routines.size());
}
BENCHMARK(OneLargeModule)->Arg(1)->Arg(40)->Unit(benchmark::kMillisecond);

/// Every module of a project, the results kept as the binder needs them.
void AllModules(benchmark::State& state) {
  const std::vector<std::string> texts = ReadModules();
  std::size_t bytes = 0;
  for (const std::string& code : texts) bytes += code.size();
  for (auto _ : state) {
    Workspace workspace;
    Module module;
    std::vector<Module> kept;
    for (const std::string& code : texts) {
      ParseModule(code, {}, workspace, module);
      kept.push_back(module);
    }
    benchmark::DoNotOptimize(kept.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK(AllModules)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::language
