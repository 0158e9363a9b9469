#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

TEST_F(CliTest, FilesAreReplacedWholeOrNotAtAll) {
  Write("a.bas", kGreeting);
  Write("alt", "bleibt");
  fs::create_directory(Folder() / "ordner");
  for (const char* const line : {"text -o alt --module b a.bas", "text -o ordner a.bas", "text -o fehlt/neu a.bas"}) {
    const Result result = Run(line);
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_NE(result.err, "");
    EXPECT_EQ(Names("."), "a.bas alt ordner");
    EXPECT_EQ(Read("alt"), "bleibt");
  }
  EXPECT_EQ(Run("text -o alt a.bas").err, "");
  EXPECT_EQ(Read("alt"), Run("text a.bas").out);
#ifdef _WIN32
  EXPECT_EQ(Run("text -o nul a.bas").err, "");
#else
  EXPECT_EQ(Run("text -o /dev/null a.bas").err, "");
#endif
  EXPECT_EQ(Names("."), "a.bas alt ordner");
}

TEST_F(CliTest, TheOutputIsNeverPartOfTheInput) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  ASSERT_EQ(Run("inventory scan -o inv a.bas").status, 0);
  ASSERT_EQ(Run("check --write-baseline bekannt a.bas").status, 0);
  fs::create_hard_link(Folder() / "a.bas", Folder() / "b.bas");
  fs::create_hard_link(Folder() / "inv", Folder() / "inv2");
  const std::string stock = Read("inv");
  Write("p/Notizen.db", "des Benutzers");
  Write("liste", "a.bas\n");
  Write("s/a.bas", kGreeting);
  Write("s/b.cls", kCard);
  Write("s/d.doc", "kein Office");
  Write("v.vbp", "Class=Karte; s\\b.cls\n");
  Write("t/v.vbp", "Class=Karte; ..\\s\\b.cls\n");
  for (const char* const line : {"text -o a.bas ./a.bas",
                                 "rtf -o b.bas a.bas",
                                 "outline -o p/M1.txt p",
                                 "modules -o ./p/Quillmate.mdb p",
                                 "html -o s/a.bas s",
                                 "text -o s/b.cls v.vbp",
                                 "tags -o t/v.vbp t",
                                 "search -o s/d.doc x s",
                                 "unused -o s s",
                                 "index -o s s",
                                 "symbols -o s/b.cls s",
                                 "site -o s s --force",
                                 "digest -o p/Notizen.db p",
                                 "digest -o liste --files-from liste",
                                 "check -o bekannt --baseline bekannt a.bas",
                                 "unused -o s/a.bas --exact s",
                                 "check --write-baseline s/a.bas s",
                                 "compare --html s/a.bas s t",
                                 "inventory report -o inv inv",
                                 "inventory report --csv -o inv2 inv",
                                 "inventory report --html inv2 inv",
                                 "inventory report --xlsx inv inv",
                                 "inventory merge -o inv ./inv",
                                 "inventory merge -o inv2 inv"}) {
    const Result result = Run(line);
    EXPECT_EQ(result.status, 2) << line;
    EXPECT_NE(result.err.find(" gehört zur Eingabe\n"), std::string::npos) << line << "\n" << result.err;
  }
  EXPECT_EQ(Read("a.bas"), kGreeting);
  EXPECT_EQ(Read("s/a.bas"), kGreeting);
  EXPECT_TRUE(Read("inv") == stock);
  // A list may take the place of the one that was read.
  EXPECT_EQ(Run("check --baseline bekannt --write-baseline bekannt a.bas").status, 0);
  EXPECT_EQ(Run("text -o p/neu.txt p").status, 0);
}

/// What a project knows beyond its index is missing then, and nobody could tell by the result.
TEST_F(CliTest, DamagedFactsAreTold) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  ASSERT_EQ(Run("index -o q a.bas").status, 0);
  EXPECT_EQ(Run("compare p q").status, 0);
  Write("q/Fakten.db", "no database at all, but long enough to look like one to a hasty reader");
  for (const char* const line : {"symbols --count q", "site -o s q", "check q"}) {
    const Result result = Run(line);
    EXPECT_EQ(result.status, 0) << line;
    EXPECT_NE(result.err.find("Fakten.db: "), std::string::npos) << line << result.err;
  }
  EXPECT_EQ(Run("compare p q").status, 3);
}

TEST_F(CliTest, AReaderThatGoesAwayIsNoError) {
  Write("lang.bas", LongModule());
  for (const char* const line : {"text lang.bas", "rtf -o - lang.bas", "--help"}) {
    StartedProgram program = Start(line, false);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Errors(), "");
  }
}

/// The program stands still in the middle of its output, with a scratch folder and the database in it open.
TEST_F(CliTest, InterruptionsRemoveWhatIsHalfDone) {
  Write("lang.bas", LongModule());
  for (const Interruption& interruption : Interruptions()) {
    StartedProgram program = Start("text lang.bas");
    program.AwaitOutput();
    EXPECT_FALSE(fs::is_empty(Scratch()));
    program.Interrupt(interruption.kind);
    EXPECT_EQ(program.Wait(), interruption.status);
    EXPECT_EQ(program.Errors(), "");
    EXPECT_TRUE(fs::is_empty(Scratch()));
  }
}

}  // namespace
}  // namespace quillmate::cli
