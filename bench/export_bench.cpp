#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/export/html.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/rtf.h>
#include <quillmate/export/site.h>
#include <quillmate/settings/options.h>

#include "marked_code.h"

namespace quillmate::output {
namespace {

std::string CodeOf(const benchmark::State& state) {
  return bench::MarkedCode(static_cast<std::size_t>(state.range(0)) * 1'000'000);
}

void CountBytes(benchmark::State& state, const std::string& code) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(code.size()));
}

void ColourBodyWhole(benchmark::State& state) {
  const std::string code = CodeOf(state);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(ColourBody(code, state.range(1) != 0));
  CountBytes(state, code);
}

void ColourBodyPieces(benchmark::State& state) {
  const std::string code = CodeOf(state);
  std::size_t written = 0;
  for ([[maybe_unused]] auto round : state) {
    ColourBody(code, state.range(1) != 0, [&](std::string_view piece) { written += piece.size(); });
  }
  benchmark::DoNotOptimize(written);
  CountBytes(state, code);
}

void PlainTextWhole(benchmark::State& state) {
  const std::string code = CodeOf(state);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(PlainText(code));
  CountBytes(state, code);
}

void BuildHtmlWhole(benchmark::State& state) {
  const std::string code = CodeOf(state);
  text::CodeLook look = settings::LookOf({});
  look.boldRoutines = state.range(1) != 0;
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(BuildHtml(code, look));
  CountBytes(state, code);
}

void BuildHtmlPieces(benchmark::State& state) {
  const std::string code = CodeOf(state);
  text::CodeLook look = settings::LookOf({});
  look.boldRoutines = state.range(1) != 0;
  std::size_t written = 0;
  for ([[maybe_unused]] auto round : state) {
    BuildHtml(code, look, [&](std::string_view piece) { written += piece.size(); });
  }
  benchmark::DoNotOptimize(written);
  CountBytes(state, code);
}

/// Modules of 1,000 lines with 40 routines each, the last line of each calling one of another module.
SiteProject ProjectOfModules(int modules, const std::filesystem::path& folder) {
  constexpr int kRoutines = 40;
  constexpr std::int32_t kLines = 25;
  std::mt19937 random(1);
  SiteProject project;
  project.title = "Messung";
  project.indexFolder = folder;
  const auto nameOf = [](int routine) { return "Routine" + std::to_string(routine); };
  for (int m = 1; m <= modules; ++m) {
    codedb::ModuleRecord module{{m}, "mdl" + std::to_string(m), 2, kRoutines * kLines, {}};
    std::string code;
    for (int r = 0; r < kRoutines; ++r) {
      const int number = (m - 1) * kRoutines + r + 1;
      module.routines.push_back(
          {{number}, {m}, nameOf(number), 1, 1, 1, codedb::Line{r * kLines + 1}, codedb::Line{(r + 1) * kLines}});
      code += "|\237x||\237f|Sub|n\237| " + nameOf(number) + "()|y\237|\r\n";
      for (std::int32_t i = 0; i < kLines - 3; ++i) {
        code += "\t|\237f|If|n\237| lngWert > 0 |\237f|Then|n\237| strText = |\237s|\"Wert\"|n\237| & lngWert\r\n";
      }
      code += "\t" + nameOf(static_cast<int>(random() % static_cast<unsigned>(modules * kRoutines)) + 1) + "\r\n";
      code += "|\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n";
    }
    codedb::WriteModuleText(folder, {m}, code);
    project.modules.push_back(std::move(module));
  }
  return project;
}

void WriteWholeSite(benchmark::State& state) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "quillmate_export_bench";
  std::filesystem::create_directories(folder / "site");
  const int modules = static_cast<int>(state.range(0));
  SiteProject project = ProjectOfModules(modules, folder);
  symbols::Sources sources;
  std::vector<symbols::ModulePlaces> places;
  sources.projects.emplace_back();
  for (const codedb::ModuleRecord& module : project.modules) {
    symbols::ModuleSource& source = sources.modules.emplace_back();
    source.name = module.name;
    source.text = PlainText(codedb::ReadModuleText(folder, module.number));
    places.emplace_back(module.number.value);
  }
  const auto understanding = symbols::ReferenceIndex::Build(std::move(sources));
  project.understanding = &understanding;
  project.places = places;
  for ([[maybe_unused]] auto round : state) WriteSite(project, settings::LookOf({}), folder / "site");
  state.SetItemsProcessed(state.iterations() * modules * 1000);
  std::filesystem::remove_all(folder);
}

BENCHMARK(ColourBodyWhole)->ArgsProduct({{1, 10, 40}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(ColourBodyPieces)->ArgsProduct({{1, 10, 40}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(BuildHtmlWhole)->ArgsProduct({{1, 10, 40}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(BuildHtmlPieces)->ArgsProduct({{1, 10, 40}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(PlainTextWhole)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
/// Items are lines.
BENCHMARK(WriteWholeSite)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::output
