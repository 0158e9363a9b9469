#include <gtest/gtest.h>

#include "scratch.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

TEST(WholeFile, FailuresNameFileAndReason) {
  const ScratchFolder folder;
  const fs::path missing = folder.Path() / "weg" / "Datei.txt";
  const struct {
    fs::path file;
    const char* reason;
  } cases[] = {{missing, "existiert nicht"}, {folder.Path(), "einen Ordner"}};
  for (const auto& c : cases) {
    const std::string message = MessageOf<std::runtime_error>([&] { WriteWholeFile(c.file, "x"); });
    EXPECT_NE(message.find(PathText(c.file)), std::string::npos) << message;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
  }
  for (const fs::path& file : {missing, folder.Path()}) {
    const std::string message = MessageOf<std::runtime_error>([&] { ReadWholeFile(file); });
    EXPECT_NE(message.find(PathText(file)), std::string::npos) << message;
  }
}

TEST(WholeFile, SizesAroundTheBuffer) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / "Datei";
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8191U, 8192U, 100000U}) {
    WriteWholeFile(file, std::string(size, 'x'));
    EXPECT_EQ(ReadWholeFile(file).size(), size);
  }
}

#ifndef _WIN32  // where files are on disks and links need rights
TEST(WholeFile, FullDisk) {
  const ScratchFolder folder;
  const fs::path full = folder.Path() / "voll.txt";
  fs::create_symlink("/dev/full", full);
  for (const std::size_t size : {1U, 1U << 20U}) {
    const std::string message = MessageOf<std::runtime_error>([&] { WriteWholeFile(full, std::string(size, 'x')); });
    EXPECT_NE(message.find("kein Platz mehr"), std::string::npos) << message;
  }
  EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST(WholeFile, FilesWithoutASize) { EXPECT_GT(ReadWholeFile("/proc/self/status").size(), 100U); }
#endif

}  // namespace
}  // namespace quillmate::files
