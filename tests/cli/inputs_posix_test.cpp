#include <sys/stat.h>
#include <unistd.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

TEST_F(CliTest, UnreadableFolder) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "root reads every folder";
  }
  Write("zu/a.bas", kGreeting);
  fs::permissions(Folder() / "zu", fs::perms::none);
  EXPECT_TRUE(Run("text zu").err.starts_with("quillmate-cli: " + Full("zu") + ": "));
  fs::permissions(Folder() / "zu", fs::perms::owner_all);
}

TEST_F(CliTest, LinksThatLeadNowhere) {
  fs::create_symlink("schleife.bas", Folder() / "schleife.bas");
  const Result result = Run("text schleife.bas");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.err.starts_with("quillmate-cli: " + Full("schleife.bas") + ": ")) << result.err;
}

/// What the caller has closed, or what can't be read, as standard input.
TEST_F(CliTest, StandardInputThatGivesNothing) {
  EXPECT_EQ(Run("clip -o b", {.behind = "<&-"}).err, Messages({"Kein Text in der Standardeingabe"}));
  EXPECT_EQ(Run("clip", {.behind = "<."}).err,
            Messages({"Die Standardeingabe kann nicht gelesen werden: Das ist ein Ordner"}));
  EXPECT_EQ(Names("."), "");
}

/// Nothing is waited for that never comes, and nothing is read that never ends.
TEST_F(CliTest, ModuleTextsThatAreNoPlainFiles) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  const fs::path text = Folder() / "p" / "M1.txt";
  const auto refused = [&] {
    for (const char* const line : {"text p", "unused p", "site -o s p", "index -o q p", "clip p/M1.txt"}) {
      EXPECT_EQ(Run(line).status, 1) << line;
    }
  };
  fs::remove(text);
  ASSERT_EQ(mkfifo(text.c_str(), 0600), 0);
  refused();
  fs::remove(text);
  fs::create_symlink("/dev/zero", text);
  refused();
  fs::remove(text);
  Write("p/M1.txt", "");
  fs::resize_file(text, std::uintmax_t{1} << 40U);
  refused();
  EXPECT_EQ(Names("."), "a.bas p");
}

/// The room for a thread's stack is more than there are addresses.
TEST_F(CliTest, NoThreadCanBeStarted) {
  Write("a.bas", kGreeting);
  EXPECT_EQ(Run("outline a.bas", {.before = "ulimit -s 200000000000;"}), Run("outline a.bas"));
}

TEST_F(CliTest, NoHostRunsHere) {
  Write("a.bas", kGreeting);
  for (const char* const line : {"text --host", "search x --host", "index -o p --host a.bas"}) {
    EXPECT_EQ(Run(line), Refusal(1, {"Ein laufendes Office-Programm kann nur unter Windows gelesen werden"}));
  }
  EXPECT_EQ(Run("search --host").status, 2) << "the text is still needed";
  EXPECT_EQ(Run("clip --host").status, 2);
  EXPECT_EQ(Names("."), "a.bas");
}

/// The folder behind a link becomes the project; the link stays, and who may enter the folder.
TEST_F(CliTest, ForceFollowsALinkToTheFolder) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  fs::permissions(Folder() / "p", fs::perms::owner_all);
  fs::create_directory_symlink("p", Folder() / "verweis");
  fs::permissions(Folder() / "p/M1.txt", fs::perms(0600));
  EXPECT_EQ(Run("index --force -o ./verweis a.bas").err, "");
  EXPECT_EQ(fs::status(Folder() / "p/M1.txt").permissions(), fs::perms(0600));
  EXPECT_EQ(Names("p"), "Fakten.db M1.txt Quillmate.mdb");
  EXPECT_TRUE(fs::is_symlink(Folder() / "verweis"));
  EXPECT_EQ(fs::status(Folder() / "p").permissions(), fs::perms::owner_all);
}

}  // namespace
}  // namespace quillmate::cli
