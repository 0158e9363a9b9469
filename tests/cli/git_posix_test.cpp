#include <cstdlib>
#include <string>
#include <vector>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// A repository of its own, which nothing of the user's settings gets into.
class GitTest : public CliTest {
 protected:
  void SetUp() override {
    if (std::system("git --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no git";
    Git("init -q -b main .");
    Write("code/M.bas", "Attribute VB_Name = \"M\"\nSub A()\n  x = 1\nEnd Sub\n");
    Write("code/lies.txt", "kein Code");
    Commit();
  }

  /// Its output; the line is one of the shell.
  std::string Git(const std::string& line) const {
    const std::string before = "cd '" + Folder().string() +
                               "' && GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_NOSYSTEM=1 git -c user.name=T "
                               "-c user.email=t@example.org -c protocol.file.allow=always ";
    EXPECT_EQ(std::system((before + line + " >ausgabe 2>fehler").c_str()), 0) << line << Read("fehler");
    return Read("ausgabe");
  }
  void Commit() const {
    Git("add -A -- . ':!ausgabe' ':!teil' ':!fehler' && git -c user.name=T -c user.email=t@example.org commit -q -m x");
  }
};

TEST_F(GitTest, RevisionsAreInputs) {
  Write("code/M.bas", "Attribute VB_Name = \"M\"\nSub A()\n  x = 2\nEnd Sub\n");
  const Result changed = Run("compare --stat git:HEAD:code code");
  EXPECT_EQ(changed.status, 1);
  EXPECT_EQ(changed.out, " M | +1 -1 geändert\nModule: 1 geändert; Routinen: 1 geändert; Zeilen: 1 dazu, 1 weg\n");
  EXPECT_EQ(Run("compare --stat git:HEAD:code/M.bas code/M.bas").out, changed.out);
  EXPECT_EQ(Run("compare git::code git:main:./code"), Success("Keine Unterschiede\n"));
  const Result json = Run("compare --json code git:HEAD:code");
  EXPECT_NE(json.out.find("\"file\":\"git:HEAD:code/M.bas\""), std::string::npos) << json.out;
  Git("add code/M.bas");
  EXPECT_EQ(Run("compare git::code code").status, 0);
  // A VB project with what it names.
  Write("vb/P.vbp", "Type=Exe\r\nModule=T; T.bas\r\nName=\"Kasse\"\r\n");
  Write("vb/T.bas", "Attribute VB_Name = \"T\"\nSub T()\nEnd Sub\n");
  Commit();
  const Result project = Run("compare --json git:HEAD:vb vb");
  EXPECT_EQ(project.status, 0) << project.err;
  EXPECT_NE(project.out.find("\"project\":\"Kasse\",\"state\":\"same\",\"old_file\":\"git:HEAD:vb/P.vbp\""),
            std::string::npos)
      << project.out;
  const struct {
    const char* line;
    const char* message;
  } cases[] = {
      {"compare git:weg:code code", "git:weg:code: Die Revision \"weg\" gibt es nicht"},
      {"compare git:HEAD:weg code", "git:HEAD:weg: Das gibt es dort nicht"},
      {"compare git:HEAD:../x code", "git:HEAD:../x: Der Pfad führt aus dem Repository hinaus"},
  };
  for (const auto& c : cases) EXPECT_EQ(Run(c.line), Refusal(3, {c.message})) << c.line;
}

/// Links within the tree, and a repository within the repository.
TEST_F(GitTest, LinksAndSubmodules) {
  fs::create_symlink("M.bas", Folder() / "code/N.bas");
  Git("init -q -b main teil");
  Write("teil/T.bas", "Attribute VB_Name = \"T\"\nSub T()\nEnd Sub\n");
  Git("-C teil add T.bas");
  Git("-C teil commit -q -m y");
  Git("submodule -q add ./teil code/teil");
  Commit();
  const Result whole = Run("compare --json git:HEAD:code git:HEAD:code");
  EXPECT_EQ(whole.status, 0) << whole.err;
  for (const char* const file : {"code/M.bas", "code/N.bas", "code/teil/T.bas"}) {
    EXPECT_NE(whole.out.find("git:HEAD:" + std::string(file)), std::string::npos) << file << whole.out;
  }
  Git("submodule -q deinit -f code/teil");
  const Result part = Run("compare git:HEAD:code code");
  EXPECT_EQ(part.status, 3);
  EXPECT_NE(part.err.find("code/teil: Das Submodul ist nicht ausgecheckt"), std::string::npos) << part.err;
}

/// What the manual tells users to set once.
TEST_F(GitTest, DifferencesShowCode) {
  Write(".gitattributes", "*.bas diff=vba\n");
  Git("config diff.vba.textconv '\"" + Program().string() + "\" text --textconv'");
  Write("code/M.bas", "Attribute VB_Name = \"M\"\nSub A()\n  x = \"\374\"\nEnd Sub\n");
  Write("code/Kaputt.bas", std::string("\0\1", 2));
  Git("add -N code/Kaputt.bas");
  const std::string shown = Git("diff");
  EXPECT_NE(shown.find("\n-  x = 1\n+  x = \"ü\"\n"), std::string::npos) << shown;
  EXPECT_EQ(shown.find("Attribute"), std::string::npos);
  EXPECT_NE(shown.find("\n+Datei enthält keinen Text\n"), std::string::npos) << shown;
}

}  // namespace
}  // namespace quillmate::cli
