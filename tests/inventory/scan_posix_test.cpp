#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <quillmate/inventory/scan.h>

#include "files/scratch.h"
#include "inventory/own_program.h"
#include "inventory/table.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;

TEST(ScanPosix, KeepsNamesAndFollowsNoLinks) {
  const files::ScratchFolder scratch;
  const fs::path root = scratch.Path() / "r";
  const std::string code = "Sub A()\r\nEnd Sub\r\n";
  for (const char* const name : {"r/a\xFF.bas", "r/b\nc.bas", "r/100%41.bas", "r/100%.bas", "r/innen/ü.bas"}) {
    files::WriteWholeFile((fs::create_directories((scratch.Path() / name).parent_path()), scratch.Path() / name), code);
  }
  fs::create_directory_symlink(root, root / "innen/kreis");
  fs::create_symlink(root / "100%.bas", root / "verweis.bas");
  ASSERT_EQ(mkfifo((root / "rohr.bas").c_str(), 0600), 0);
  const fs::path closed = root / "zu";
  fs::create_directory(closed);
  const bool mayClose = geteuid() != 0;
  if (mayClose) fs::permissions(closed, fs::perms::none);
  const ScanResult result = Scan(scratch / "b", Options(root));
  fs::permissions(closed, fs::perms::owner_all);
  EXPECT_EQ(Ask(scratch / "b", "SELECT name FROM datei ORDER BY name"),
            "100%.bas\n100%2541.bas\na%FF.bas\nb%0Ac.bas\nü.bas\n");
  EXPECT_EQ(Ask(scratch / "b", "SELECT count(*) FROM inhalt"), "1\n");
  EXPECT_EQ(result.problems.size(), mayClose ? 1U : 0U);
  EXPECT_EQ(Scan(scratch / "b", Options(root)).read, 0);
}

TEST(ScanPosix, AFullDiskLeavesAWholeDatabase) {
  const files::ScratchFolder scratch;
  for (int i = 0; i < 300; ++i) {
    scratch.Write("r/" + std::to_string(i) + ".bas",
                  "Sub A()\r\nx = \"" + std::string(4000, 'x') + std::to_string(i) + "\"\r\nEnd Sub");
  }
  Scan(scratch / "b", Options(scratch / "gibt es nicht"));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small = {150000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_NE(files::MessageOf([&] { Scan(scratch / "b", Options(scratch / "r")); }).find("Datenträger"),
            std::string::npos);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(Ask(scratch / "b", "PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(Scan(scratch / "b", Options(scratch / "r")).found, 300);
  EXPECT_EQ(Ask(scratch / "b", "SELECT count(*) FROM datei WHERE zustand = 'makros'"), "300\n");
}

}  // namespace
}  // namespace quillmate::inventory
