#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include <quillmate/host/document_host.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/operations.h>

/// Listing and reading a folder of a thousand modules of about 35 KB each, in the styles that real projects mix: every
/// third file with umlauts in Windows-1252, half of the files with LF alone.
namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

constexpr int kModules = 1000;
constexpr std::size_t kModuleSize = 35U << 10U;

std::string ModuleBytes(int number) {
  const std::string umlauts = number % 3 == 0 ? "    ' Zeilen pr\374fen und Betr\344ge addieren\n" : "";
  std::string bytes = "Attribute VB_Name = \"Modul" + std::to_string(number) + "\"\nOption Explicit\n";
  for (int routine = 1; bytes.size() < kModuleSize; ++routine) {
    bytes.append("Public Function Summe").append(std::to_string(routine));
    bytes.append("(ByVal Zeile As Long) As Double\n    Dim i As Long\n").append(umlauts);
    bytes += "    For i = 1 To Zeile\n        If Cells(i, 1).Value > 0 Then Summe1 = Summe1 + Cells(i, 1).Value\n";
    bytes += "    Next i\n\nEnd Function\n";
  }
  return number % 2 == 0 ? text::NormalizeLineBreaks(bytes) : bytes;
}

/// The folder with its files, made once and removed at the end.
class ModuleFolder {
 public:
  ModuleFolder() : path_(fs::temp_directory_path() / "quillmate_host_bench") {
    fs::remove_all(path_);
    fs::create_directories(path_);
    for (int number = 0; number < kModules; ++number) {
      std::ofstream(path_ / ("Modul" + std::to_string(number) + ".bas"), std::ios::binary) << ModuleBytes(number);
    }
  }
  ~ModuleFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  ModuleFolder(const ModuleFolder&) = delete;
  ModuleFolder& operator=(const ModuleFolder&) = delete;
  const fs::path& Path() const noexcept { return path_; }

 private:
  fs::path path_;
};

const fs::path& SharedFolder() {
  static const ModuleFolder folder;
  return folder.Path();
}

void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * kModules * static_cast<std::int64_t>(kModuleSize));
}

void ListFolder(benchmark::State& state) {
  DocumentHost host;
  host.SetSources({SharedFolder()});
  for (auto step : state) benchmark::DoNotOptimize(host.ProjectCount());
  CountBytes(state);
}
BENCHMARK(ListFolder)->Unit(benchmark::kMillisecond);

void ReadFolder(benchmark::State& state) {
  DocumentHost host;
  host.SetSources({SharedFolder()});
  host.ProjectCount();
  for (auto step : state) {
    for (int position = 1; position <= host.ComponentCount(1); ++position) {
      const HostComponent listed = host.Component(1, position);
      const HostComponent now = host.ComponentByName(1, listed.name, position);
      benchmark::DoNotOptimize(host.Lines(1, listed.name, position, now.lineCount));
    }
  }
  CountBytes(state);
}
BENCHMARK(ReadFolder)->Unit(benchmark::kMillisecond);

void ParseModule(benchmark::State& state) {
  const std::string bytes = ModuleBytes(static_cast<int>(state.range(0)));
  for (auto step : state) benchmark::DoNotOptimize(office::ParseModuleFile(bytes, "bas"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(ParseModule)->Arg(1)->Arg(2)->Arg(3);

}  // namespace
}  // namespace quillmate::host
