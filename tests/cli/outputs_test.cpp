#include <array>
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// More text than any buffer on the way holds.
std::string LongModule() {
  std::string code;
  for (int i = 0; i < 40000; ++i) {
    code += "' Zeile " + std::to_string(i) + "\n";
  }
  return code;
}

struct Pipe {
  Pipe() { EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0); }
  ~Pipe() {
    close(ends[0]);
    close(ends[1]);
  }
  std::array<int, 2> ends{};
};

TEST_F(CliTest, FilesAreReplacedWholeOrNotAtAll) {
  Write("a.bas", kGreeting);
  Write("lang.bas", LongModule());
  Write("alt", "bleibt");
  Write("schutz", "bleibt");
  fs::permissions(Folder() / "schutz", fs::perms::owner_read);
  fs::create_symlink("alt", Folder() / "verweis");
  fs::create_directory(Folder() / "ordner");
  const struct {
    std::vector<std::string> arguments;
    const char* limit;
  } failing[] = {{{"text", "-o", "alt", "lang.bas"}, "trap '' XFSZ; ulimit -f 900;"},
                 {{"rtf", "-o", "verweis", "lang.bas"}, "trap '' XFSZ; ulimit -f 900;"},
                 {{"text", "-o", "alt", "--module", "b", "a.bas"}, ""},
                 {{"text", "-o", "ordner", "a.bas"}, ""},
                 {{"text", "-o", "fehlt/neu", "a.bas"}, ""},
                 {{"text", "-o", "/dev/full", "lang.bas"}, ""}};
  for (const auto& c : failing) {
    const Result result = Run(c.arguments, {.before = c.limit});
    EXPECT_EQ(result.status, 1) << c.arguments[2];
    EXPECT_NE(result.err, "");
    EXPECT_EQ(Names("."), "a.bas alt lang.bas ordner schutz verweis");
    EXPECT_EQ(Read("alt"), "bleibt");
  }
  const std::string text = Run({"text", "a.bas"}).out;
  EXPECT_EQ(Run({"text", "-o", "verweis", "a.bas"}).status, 0);
  EXPECT_TRUE(fs::is_symlink(Folder() / "verweis"));
  EXPECT_EQ(Read("alt"), text);
  EXPECT_EQ(Run({"text", "-o", "/dev/stdout", "a.bas"}, {.behind = "| cat"}).out, text);
  if (geteuid() != 0) {
    EXPECT_EQ(Run({"text", "-o", "schutz", "a.bas"}).status, 1);
    EXPECT_EQ(Read("schutz"), "bleibt");
  }
}

TEST_F(CliTest, TheOutputIsNeverPartOfTheInput) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run({"index", "-o", "p", "a.bas"}).status, 0);
  fs::create_hard_link(Folder() / "a.bas", Folder() / "b.bas");
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"text", "-o", "a.bas", "./a.bas"},
                                                    {"rtf", "-o", "b.bas", "a.bas"},
                                                    {"outline", "-o", "p/M1.txt", "p"},
                                                    {"modules", "-o", "./p/Quillmate.mdb", "p"}}) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 2) << arguments[2];
    EXPECT_TRUE(result.err.starts_with("quillmate-cli: Die Ausgabe " + arguments[2] + " gehört zur Eingabe\n"));
  }
  EXPECT_EQ(Read("a.bas"), kGreeting);
  EXPECT_EQ(Run({"text", "-o", "p/neu.txt", "p"}).status, 0);
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
    const Result result = Run({"text", c.file}, {.behind = c.behind});
    EXPECT_EQ(result.status, c.status) << c.behind;
    EXPECT_EQ(result.err, *c.err == '\0' ? "" : Messages({c.err}));
  }
}

TEST_F(CliTest, AReaderThatGoesAwayIsNoError) {
  Write("lang.bas", LongModule());
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"text", "lang.bas"}, {"rtf", "-o", "-", "lang.bas"}, {"--help"}}) {
    const Pipe out;
    const Pipe err;
    close(out.ends[0]);
    const pid_t process = Start(arguments, out.ends[1], err.ends[1]);
    EXPECT_EQ(Wait(process), 0);
    pollfd said{err.ends[0], POLLIN, 0};
    EXPECT_EQ(poll(&said, 1, 0), 0) << "something was written to standard error";
  }
}

/// The program stands still in the middle of its output, with a scratch folder and, in one case, files beside a target.
TEST_F(CliTest, SignalsRemoveWhatIsHalfDone) {
  Write("lang.bas", LongModule());
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const Pipe out;
    const Pipe err;
    const pid_t process = Start({"text", "lang.bas"}, out.ends[1], err.ends[1]);
    pollfd written{out.ends[0], POLLIN, 0};
    ASSERT_EQ(poll(&written, 1, -1), 1);
    EXPECT_FALSE(fs::is_empty(Scratch()));
    kill(process, signal);
    EXPECT_EQ(Wait(process), 128 + signal);
    EXPECT_TRUE(fs::is_empty(Scratch()));
  }
}

TEST_F(CliTest, ProgressOnATerminalIsWipedOut) {
  Write("a.bas", kGreeting);
  int terminal = -1;
  int screen = -1;
  winsize size{24, 10, 0, 0};
  ASSERT_EQ(openpty(&terminal, &screen, nullptr, nullptr, &size), 0);
  const Pipe out;
  EXPECT_EQ(Wait(Start({"outline", "a.bas"}, out.ends[1], screen)), 0);
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
