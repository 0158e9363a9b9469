#include <gtest/gtest.h>

#include <quillmate/codedb/index_files.h>

#include "scratch.h"

/// Links and files that are no files on a disk.
namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

TEST(PrepareCodeDatabase, LinksAreNotFollowed) {
  const ScratchFolder folder;
  const fs::path foreign = folder.Path() / "fremd.txt";
  WriteWholeFile(foreign, "fremd");
  fs::create_symlink(foreign, DatabasePath(folder.Path()));
  EXPECT_TRUE(PrepareCodeDatabase(folder.Path(), TemplateFile()).ok);
  EXPECT_EQ(ReadWholeFile(foreign), "fremd");
  EXPECT_EQ(ReadWholeFile(DatabasePath(folder.Path())), ReadWholeFile(TemplateFile()));
}

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

}  // namespace
}  // namespace quillmate::codedb
