#include <algorithm>

#include <poll.h>
#include <pty.h>
#include <termios.h>
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

/// A pseudo terminal of ten columns. Nothing where the system has none to give.
class Terminal {
 public:
  Terminal() {
    winsize size{24, 10, 0, 0};
    if (openpty(&master_, &screen_, nullptr, nullptr, &size) != 0) return;
    termios modes{};
    tcgetattr(screen_, &modes);
    cfmakeraw(&modes);
    tcsetattr(screen_, TCSANOW, &modes);
  }
  ~Terminal() {
    close(screen_);
    close(master_);
  }
  bool IsThere() const { return master_ >= 0; }
  std::string Name() const { return ttyname(screen_); }
  /// What has been written to it.
  std::string Shown() const {
    std::string shown(4000, '\0');
    pollfd written{master_, POLLIN, 0};
    const ssize_t count = poll(&written, 1, 0) > 0 ? read(master_, shown.data(), shown.size()) : 0;
    shown.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return shown;
  }

 private:
  int master_ = -1;
  int screen_ = -1;
};

TEST_F(CliTest, ProgressOnATerminalIsWipedOut) {
  const Terminal terminal;
  if (!terminal.IsThere()) GTEST_SKIP() << "no pseudo terminal";
  Write("a.bas", kGreeting);
  EXPECT_EQ(Run("outline a.bas", {.behind = "2>" + terminal.Name()}).status, 0);
  const std::string shown = terminal.Shown();
  EXPECT_TRUE(shown.starts_with("\rErzeuge P")) << shown;
  EXPECT_TRUE(shown.ends_with("\r         \r")) << shown;
  EXPECT_EQ(shown.find('\n'), std::string::npos);
}

/// Neither code nor names move the cursor of a terminal, turn what is read, or type for the user. Files get the bytes.
TEST_F(CliTest, ATerminalGetsNothingThatItObeys) {
  const Terminal terminal;
  if (!terminal.IsThere()) GTEST_SKIP() << "no pseudo terminal";
  // A terminal escape, and bytes that are a control (U+009B) and an override (U+202E) once they pass for UTF-8.
  const std::string code = "'\t\033[2J\r\n'\302\233\342\200\256\201\r\n'\377\r\n";
  Write("a.bas", "Attribute VB_Name = \"M\033\"\n" + code);
  const std::string origin = Origin("a.bas", "a") + ",\"source_line\":3";
  const struct {
    const char* line;
    std::string shown;
    std::string kept;
  } cases[] = {
      {"text --module M\033 a.bas", "'\t\\u001b[2J\r\n'Â›â€®\\u0081\r\n'ÿ\r\n\r\n", code + "\r\n"},
      {"outline a.bas", "M\\u001b\n", "M\033\n"},
      {"search --json › a.bas",
       "[\n{\"mod_num\":1,\"mod_name\":\"M\\u001b\",\"line\":2,\"text\":\"'Â›â€®\\u0081\"," + origin + "}\n]\n",
       "[\n{\"mod_num\":1,\"mod_name\":\"M\\u001b\",\"line\":2,\"text\":\"'Â›â€®\302\201\"," + origin + "}\n]\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run(c.line, {.behind = ">" + terminal.Name()}), Success()) << c.line;
    EXPECT_EQ(terminal.Shown(), c.shown) << c.line;
    EXPECT_EQ(Run(c.line).out, c.kept) << c.line;
  }
  // A control, all kinds of signs that turn the direction with their neighbours that don't, and what is no character.
  EXPECT_EQ(
      Run("text "
          "weg\302\233\330\234\342\200\216\342\200\252\342\200\256\342\201\246\342\201\251\342\200\257\033\377.bas"),
      Refusal(
          1, {Full("weg") +
              "\\u009b\\u061c\\u200e\\u202a\\u202e\\u2066\\u2069\342\200\257\\u001b\\xff.bas: Datei existiert nicht"}));
}

}  // namespace
}  // namespace quillmate::cli
