#include <fstream>

#include <gtest/gtest.h>
#include <windows.h>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "scratch.h"
#include "windows/child_process.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

TEST(PathsOfWindows, DrivesAndNetwork) {
  const struct {
    const char* path;
    bool absolute;
    /// Seen from the folder "vb" of drive D.
    const char* normal;
  } cases[] = {{R"(C:\a\..\b)", true, R"(C:\b)"},
               {R"(C:/a/.\b/)", true, R"(C:\a\b\)"},
               {R"(C:\)", true, R"(C:\)"},
               {R"(\\server\share\a\..\..\..\b.bas)", true, R"(\\server\share\b.bas)"},
               {"//server/share/x", true, R"(\\server\share\x)"},
               {R"(\x\y)", false, R"(D:\x\y)"},
               {R"(..\Übung_日本.bas)", false, R"(D:\Übung_日本.bas)"},
               {"x/y", false, R"(D:\vb\x\y)"}};
  for (const auto& c : cases) {
    const fs::path path = PathFromText(c.path);
    EXPECT_EQ(IsAbsolutePath(path), c.absolute) << c.path;
    EXPECT_EQ(PathText(NormalPath(PathSeenFrom(R"(D:\vb)", path))), c.normal) << c.path;
  }
  const fs::path share = PathFromText(R"(\\server\share)");
  EXPECT_EQ(PathText(NormalPath(PathSeenFrom(share / "vb", R"(..\a.bas)"))), R"(\\server\share\a.bas)");
  EXPECT_EQ(PathText(AbsolutePath(share)), R"(\\server\share)");
  EXPECT_TRUE(AbsolutePath({}).empty());
}

TEST(PathsOfWindows, AsTheFolderNamesIt) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / PathFromText("Über.BAS");
  WriteWholeFile(file, "x");
  EXPECT_EQ(PathAsNamed(folder.Path() / PathFromText("üBER.bas")).filename(), file.filename());
  EXPECT_EQ(PathAsNamed(folder.Path().parent_path() / PathFromText("PRÜF ORDNER/üBER.bas")), PathAsNamed(file));
  EXPECT_EQ(PathAsNamed(folder.Path() / "*.BAS").filename(), "*.BAS");
}

TEST(PathsOfWindows, WhatIsOpenIsNamedAsTheReason) {
  const ScratchFolder folder;
  WriteWholeFile(folder.Path() / "a", "1");
  WriteWholeFile(folder.Path() / "b", "2");
  const std::ifstream open(folder.Path() / "b");
  try {
    RenamePath(folder.Path() / "a", folder.Path() / "b");
    ADD_FAILURE();
  } catch (const fs::filesystem_error& error) {
    EXPECT_TRUE(error.code() == std::errc::permission_denied || error.code() == std::errc::device_or_resource_busy);
  }
  std::error_code error;
  EXPECT_FALSE(RemovePath(folder.Path() / "b", error));
  EXPECT_EQ(error, std::errc::device_or_resource_busy);
}

}  // namespace
}  // namespace quillmate::files
