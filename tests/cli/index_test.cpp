
#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kProjectFiles = "Fakten.db M1.txt M2.txt Quillmate.mdb";
#ifndef _WIN32
const Environment kSmallFiles{.before = "trap '' XFSZ; ulimit -f 8;"};
#endif

/// A project folder "p" with two modules, a sub-folder and a file of somebody else.
class IndexTest : public CliTest {
 protected:
  IndexTest() {
    Write("a.bas", kGreeting);
    Write("b.cls", kCard);
    Write("c.bas", "'neu\n'\n'\n");
    EXPECT_EQ(Run("index -o p a.bas b.cls").status, 0);
    Write("p/Bilder/x.png", "x");
    Write("p/Notiz.txt", "n");
  }
};

TEST_F(IndexTest, WritesAFolderOnlyOnce) {
  EXPECT_EQ(Names("p"), "Bilder Fakten.db M1.txt M2.txt Notiz.txt Quillmate.mdb");
  const std::string before = Read("p/Quillmate.mdb");
  EXPECT_EQ(Run("index -o p c.bas"),
            Refusal(1, {Full("p") + ": Der Ordner existiert schon; --force überschreibt ein Projekt"}));
  EXPECT_EQ(Read("p/Quillmate.mdb"), before);
}

TEST_F(IndexTest, ForceReplacesTheProjectsOwnFilesAndNoOthers) {
  Write("p/M7.txt", "fremd");
  for (const char* const target : {"p", "p/", "./q/../p"}) {
    EXPECT_EQ(Run("index --force c.bas -o " + std::string(target)), Success());
    EXPECT_EQ(Names("p"), "Bilder Fakten.db M1.txt M7.txt Notiz.txt Quillmate.mdb");
    EXPECT_EQ(Read("p/Bilder/x.png") + Read("p/Notiz.txt") + Read("p/M7.txt"), "xnfremd");
    EXPECT_EQ(Run("text --module c p").out, "'neu\r\n'\r\n'\r\n\r\n");
  }
  Write("p/M2.txt", "fremd");
  EXPECT_EQ(Run("index --force -o p a.bas b.cls"),
            Refusal(1, {Full("p/M2.txt") + ": Das gehört nicht zum Projekt und wird nicht überschrieben"}));
  EXPECT_EQ(Names("."), "a.bas b.cls c.bas p");
}

TEST_F(IndexTest, APartialReadReplacesNoProjectUnasked) {
  const std::string before = Read("p/Quillmate.mdb");
  const std::string missing = Full("weg.bas") + ": Datei existiert nicht";
  EXPECT_EQ(Run("index --force -o p c.bas weg.bas"),
            Refusal(1, {missing,
                        "Nicht alles konnte gelesen werden; das Projekt in p bleibt, wie es war (--partial "
                        "ersetzt es trotzdem)"}));
  EXPECT_EQ(Read("p/Quillmate.mdb"), before);
  for (const char* const line : {"index --force --partial -o p c.bas weg.bas", "index -o neu c.bas weg.bas"}) {
    EXPECT_EQ(Run(line), (Result{1, "", Messages({missing})})) << line;
  }
  EXPECT_EQ(Names("neu"), "Fakten.db M1.txt Quillmate.mdb");
}

TEST_F(IndexTest, ForceTouchesNoForeignFolder) {
  Write("daten/M1.txt", "mein");
  Write("datei", "meine");
  const struct {
    const char* target;
    const char* message;
  } cases[] = {{"daten", "Der Ordner ist kein Projekt und nicht leer; er wird nicht überschrieben"},
               {"datei", "Das ist kein Ordner"},
               {"/", "Der Ordner ist kein Projekt und nicht leer; er wird nicht überschrieben"}};
  for (const auto& c : cases) {
    const Result result = Run("index --force a.bas -o " + std::string(c.target));
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
  }
  EXPECT_EQ(Read("daten/M1.txt") + Read("datei"), "meinmeine");
  fs::create_directory(Folder() / "leer");
  EXPECT_EQ(Run("index --force -o leer a.bas b.cls").status, 0);
  EXPECT_EQ(Names("leer"), kProjectFiles);
}

TEST_F(IndexTest, NothingIsLeftOfAFailedRun) {
  const std::string before = Read("p/Quillmate.mdb");
  const struct {
    const char* line;
    Environment around{};
  } cases[] = {
      {"index -o neu weg.bas"},
      {"index --force -o p weg.bas"},
      {"index -o fehlt/neu a.bas"},
#ifndef _WIN32
      // No file may grow beyond some blocks of 512 bytes, which fails like a full disk.
      {"index -o neu a.bas", kSmallFiles},
      {"index --force -o p a.bas", kSmallFiles},
      {"index --force -o p gross.bas", {.before = "trap '' XFSZ; ulimit -f 64;"}},
      {"index --force -o p q", kSmallFiles},
#endif
  };
  Write("gross.bas", std::string(100000, '\n') + "'");
  ASSERT_EQ(Run("index -o q p").status, 0);
  for (const auto& c : cases) {
    const Result result = Run(c.line, c.around);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.starts_with("quillmate-cli: "));
    EXPECT_EQ(Names("."), "a.bas b.cls c.bas gross.bas p q");
    EXPECT_EQ(Names("p"), "Bilder Fakten.db M1.txt M2.txt Notiz.txt Quillmate.mdb");
    EXPECT_EQ(Read("p/Quillmate.mdb"), before);
  }
}

TEST_F(IndexTest, CopiesASavedProject) {
  const std::string modules = Run("modules --json p").out;
  EXPECT_EQ(Run("index -o q p").err, "");
  EXPECT_EQ(Names("q"), kProjectFiles);
  EXPECT_EQ(Run("modules --json q").out, modules);
  EXPECT_EQ(Run("text q").out, Run("text p").out);
  EXPECT_EQ(Run("index --force -o p p").status, 2);
  EXPECT_EQ(Names("p"), "Bilder Fakten.db M1.txt M2.txt Notiz.txt Quillmate.mdb");
  EXPECT_EQ(Run("modules --json p").out, modules);
}

}  // namespace
}  // namespace quillmate::cli
