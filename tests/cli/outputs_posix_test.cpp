#include <pty.h>
#include <unistd.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

TEST_F(CliTest, FullDisksAndLinks) {
  Write("a.bas", kGreeting);
  Write("lang.bas", LongModule());
  Write("alt", "bleibt");
  Write("schutz", "bleibt");
  fs::permissions(Folder() / "schutz", fs::perms::owner_read);
  fs::create_symlink("alt", Folder() / "verweis");
  for (const char* const line : {"text -o alt lang.bas", "rtf -o verweis lang.bas", "text -o /dev/full lang.bas"}) {
    const Result result = Run(line, {.before = "trap '' XFSZ; ulimit -f 900;"});
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_NE(result.err, "");
    EXPECT_EQ(Names("."), "a.bas alt lang.bas schutz verweis");
    EXPECT_EQ(Read("alt"), "bleibt");
  }
  const std::string text = Run("text a.bas").out;
  EXPECT_EQ(Run("text -o verweis a.bas").status, 0);
  EXPECT_TRUE(fs::is_symlink(Folder() / "verweis"));
  EXPECT_EQ(Read("alt"), text);
  EXPECT_EQ(Run("text -o /dev/stdout a.bas", {.behind = "| cat"}).out, text);
  if (geteuid() != 0) {
    EXPECT_EQ(Run("text -o schutz a.bas").status, 1);
    EXPECT_EQ(Read("schutz"), "bleibt");
  }
}

TEST_F(CliTest, StandardOutputThatTakesNothing) {
  Write("a.bas", kGreeting);
  Write("lang.bas", LongModule());
  const struct {
    const char* file;
    const char* behind;
    int status;
    const char* err;
  } cases[] = {
      {"a.bas", ">/dev/full", 1, "Standardausgabe kann nicht geschrieben werden: Der Datenträger ist voll"},
      {"lang.bas", ">/dev/full", 1, "Standardausgabe kann nicht geschrieben werden: Der Datenträger ist voll"},
      {"a.bas", ">&-", 1, "Standardausgabe kann nicht geschrieben werden: Geschlossen"},
      {"a.bas", "<&- >/dev/null", 0, ""},
      {"a.bas", "2>&- >/dev/null", 0, ""},
  };
  for (const auto& c : cases) {
    const Result expected = c.status == 0 ? Success() : Refusal(c.status, {c.err});
    EXPECT_EQ(Run("text " + std::string(c.file), {.behind = c.behind}), expected) << c.behind;
  }
}

TEST_F(CliTest, ProgressOnATerminalIsWipedOut) {
  Write("a.bas", kGreeting);
  int terminal = -1;
  int screen = -1;
  winsize size{24, 10, 0, 0};
  ASSERT_EQ(openpty(&terminal, &screen, nullptr, nullptr, &size), 0);
  const Result result = Run("outline a.bas", {.behind = "2>" + std::string(ttyname(screen))});
  EXPECT_EQ(result.status, 0);
  close(screen);
  std::string shown(1000, '\0');
  const ssize_t count = read(terminal, shown.data(), shown.size());
  close(terminal);
  ASSERT_GT(count, 0);
  shown.resize(static_cast<std::size_t>(count));
  EXPECT_TRUE(shown.starts_with("\rErzeuge P")) << shown;
  EXPECT_TRUE(shown.ends_with("\r         \r")) << shown;
  EXPECT_EQ(shown.find('\n'), std::string::npos);
}

}  // namespace
}  // namespace quillmate::cli
