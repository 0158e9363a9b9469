#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/files/paths.h>
#include <quillmate/inventory/scan.h>

#include "inventory/own_program.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace quillmate::inventory {
namespace {

std::string program;

/// A file whose name says so does to its reader what damaged files might.
void Misbehave(const std::filesystem::path& path) {
  const std::string name = files::PathText(path.filename());
  if (name.find("absturz") != std::string::npos) std::abort();
  if (name.find("haengt") != std::string::npos) {
#ifdef _WIN32
    Sleep(INFINITE);
#else
    for (;;) pause();
#endif
  }
  if (name.find("speicher") != std::string::npos) {
    std::vector<std::string> all;
    for (;;) all.emplace_back(std::size_t{64} << 20U, 'x');
  }
}

}  // namespace

std::vector<std::string> OwnReader() { return {program, kReaderArgument}; }

}  // namespace quillmate::inventory

int main(int argc, char** argv) {
  using namespace quillmate::inventory;
  if (argc == 2 && std::string(argv[1]) == kReaderArgument) return RunReader(Misbehave);
  program = quillmate::files::PathText(quillmate::files::AbsolutePath(argv[0]));
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
