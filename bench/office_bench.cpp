#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

#include <quillmate/host/document_host.h>
#include <quillmate/office/vba_compression.h>

#include "office/vba_writer.h"

/// Listing and reading a workbook of 2.7 MB with 670 modules and 1.8 MB of source, and unpacking a text.
namespace quillmate::host {
namespace {

namespace fs = std::filesystem;
using namespace office;

constexpr int kModules = 670;
constexpr std::size_t kModuleSize = 2600;

std::string Noise(std::size_t size) {
  std::mt19937 random(1);
  std::string bytes;
  while (bytes.size() < size) bytes += Bytes<4>(random());
  return bytes;
}

/// The file, made once and removed at the end.
class Workbook {
 public:
  Workbook() : path_(fs::temp_directory_path() / "quillmate_office_bench.xlsm") {
    WrittenProject project = LargeProject(kModules, kModuleSize);
    // Compiled code is longer than the text, and data is most of a workbook.
    project.compiled = Noise(5200);
    std::ofstream(path_, std::ios::binary) << ZipOf({{"[Content_Types].xml", ""},
                                                     {"xl/worksheets/sheet1.xml", Noise(2440000)},
                                                     {"xl/vbaProject.bin", project.Bin()}});
  }
  ~Workbook() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;
  const fs::path& Path() const noexcept { return path_; }

 private:
  fs::path path_;
};

void ListAndReadWorkbook(benchmark::State& state) {
  static const Workbook workbook;
  DocumentHost host;
  host.SetSources({workbook.Path()});
  for (auto step : state) {
    host.AttachHost();
    host.ProjectCount();
    for (int position = 1; position <= host.ComponentCount(1); ++position) {
      const HostComponent listed = host.Component(1, position);
      const HostComponent now = host.ComponentByName(1, listed.name, position);
      benchmark::DoNotOptimize(host.Lines(1, listed.name, position, now.lineCount));
    }
    host.Release();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(workbook.Path())));
}
BENCHMARK(ListAndReadWorkbook)->Unit(benchmark::kMillisecond);

void UnpackText(benchmark::State& state) {
  const std::string text = LargeProject(1, std::size_t{1} << 20U).modules[0].text;
  const std::string packed = PackVba(text);
  for (auto step : state) benchmark::DoNotOptimize(UnpackVba(packed, std::string::npos));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(UnpackText);

}  // namespace
}  // namespace quillmate::host
