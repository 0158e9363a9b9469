#include <cstdlib>
#include <string>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kOld =
    "Attribute VB_Name = \"M\"\nSub Start()\n  Eins 1\nEnd Sub\nPrivate Sub Eins(x)\n  y = x\nEnd Sub\n"
    "Private Sub Zwei()\n  z = 2\nEnd Sub\n";
constexpr const char* kNew =
    "Attribute VB_Name = \"M\"\nSub Start()\n  Zwei\nEnd Sub\nPrivate Sub Eins(x)\n  y = x\nEnd Sub\n"
    "Private Sub Zwei()\n  z = 2 ' neu\nEnd Sub\n";

class CompareTest : public CliTest {
 protected:
  CompareTest() {
    Write("alt/m.bas", kOld);
    Write("neu/m.bas", kNew);
  }
};

TEST_F(CompareTest, TextForms) {
  EXPECT_EQ(Run("compare alt neu"),
            (Result{1,
                    "Modul M: geändert\n"
                    "  Sub Start, Zeile 1: geändert\n"
                    "@@ -1,3 +1,3 @@\n Sub Start()\n-  Eins 1\n+  Zwei\n End Sub\n"
                    "  Sub Zwei, Zeile 7: nur Form (Kommentare)\n"
                    "@@ -7,3 +7,3 @@\n Private Sub Zwei()\n-  z = 2\n+  z = 2 ' neu\n End Sub\n\n"
                    "Jetzt unbenutzt:\n  Sub Eins in M, Zeile 4 (sicher: nirgends verwendet)\n\n"
                    "Nicht mehr unbenutzt:\n  Sub Zwei in M, Zeile 7\n\n"
                    "Module: 1 geändert; Routinen: 1 geändert, 1 nur Form; Zeilen: 2 dazu, 2 weg\n"}));
  EXPECT_EQ(Run("compare --stat --ignore comment,case alt neu"),
            (Result{1, " M | +1 -1 geändert\nModule: 1 geändert; Routinen: 1 geändert; Zeilen: 1 dazu, 1 weg\n"}));
  EXPECT_EQ(Run("compare alt alt/m.bas"), Success("Keine Unterschiede\n"));
  const std::string markdown = Run("compare --md alt neu").out;
  EXPECT_NE(markdown.find("\n### Sub Start: geändert (Zeile 1)\n\n```diff\n@@ -1,3 +1,3 @@\n"), std::string::npos)
      << markdown;
}

TEST_F(CompareTest, Json) {
  const Result result = Run("compare --json alt neu");
  EXPECT_EQ(result.status, 1);
  for (const char* const part :
       {"{\"equal\":false,\n", "\"module\":\"M\",\"state\":\"changed\",\"old_name\":null,",
        "{\"routine\":\"Start\",\"routine_kind\":\"sub\",\"state\":\"changed\",\"old_name\":null,\"old_module\":null,"
        "\"old_line\":1,\"line\":1,\"source_line\":2,\"trivial\":[],\"diff\":\"@@ -1,3 +1,3 @@\\n Sub Start()\\n-  "
        "Eins "
        "1\\n+  Zwei\\n End Sub\\n\",\"callers\":[]}",
        "{\"routine\":\"Eins\",\"routine_kind\":\"sub\",\"state\":\"same\",",
        "\"state\":\"layout\",\"old_name\":null,\"old_module\":null,\"old_line\":7,\"line\":7,\"source_line\":8,"
        "\"trivial\":[\"comment\"],",
        "{\"change\":\"made\","}) {
    EXPECT_NE(result.out.find(part), std::string::npos) << part << result.out;
  }
}

/// A routine that is gone has its name from the old state; a caller that is in the report has a link.
TEST_F(CompareTest, GoneRoutinesAndCallers) {
  Write("vor/m.bas",
        "Attribute VB_Name = \"M\"\nSub Start()\n  Eins 1\nEnd Sub\nPrivate Sub Eins(x)\n  y = x\nEnd Sub\n"
        "Function Weg()\n  Start\nEnd Function\n");
  Write("nach/m.bas",
        "Attribute VB_Name = \"M\"\nSub Start()\n  Eins 2\nEnd Sub\nPrivate Sub Eins(x, Optional z)\n  y = x\n"
        "End Sub\n");
  const Result result = Run("compare --json --html bericht.html vor nach");
  EXPECT_EQ(result.status, 1);
  for (const char* const part :
       {"{\"routine\":\"Weg\",\"routine_kind\":\"function\",\"state\":\"gone\",\"old_name\":null,\"old_module\":null,"
        "\"old_line\":7,\"line\":null,",
        "\"module\":\"M\",\"routine\":\"Start\",\"routine_kind\":\"sub\",\"line\":1,\"certainty\":\"sure\",\"lines\":["
        "2]}]"}) {
    EXPECT_NE(result.out.find(part), std::string::npos) << part << result.out;
  }
  EXPECT_NE(Read("bericht.html").find("Aufrufer: <a href=\"#r1\">M.Start (Zeile 2)</a></p>"), std::string::npos);
}

/// The report needs nothing beside it and says nothing on standard output.
TEST_F(CompareTest, HtmlReport) {
  EXPECT_EQ(Run("compare --html bericht.html alt neu"), (Result{1}));
  const std::string html = Read("bericht.html");
  for (const char* const part : {"<td class=\"n d\">2</td><td class=\"d\">  <del>Eins 1</del></td>", "<ins>Zwei</ins>",
                                 "<a href=\"#r1\">Start</a>", "prefers-color-scheme:dark", "@media print"}) {
    EXPECT_NE(html.find(part), std::string::npos) << part;
  }
  for (const char* const part : {"http", "<script", "<link", "url("}) EXPECT_EQ(html.find(part), std::string::npos);
}

/// A saved project whose text of a module is gone, or that says itself what its sources did not give.
TEST_F(CompareTest, SavedProjectsWithGaps) {
  Write("ganz/m.bas", kOld);
  Write("ganz/n.bas", "Sub N()\n  x = 1\nEnd Sub\n");
  Write("teil/m.bas", kOld);
  Write("teil/n.bas", std::string("Sub N()\0End Sub\n", 16));
  EXPECT_EQ(Run("index -o heil ganz").status, 0);
  EXPECT_EQ(Run("index -o verlust ganz").status, 0);
  EXPECT_EQ(Run("index -o lücke teil").status, 0);
  fs::remove(Folder() / "verlust" / "M2.txt");
  EXPECT_EQ(Run("compare heil ganz"), (Result{0, "Keine Unterschiede\n"}));
  for (const char* const side : {"verlust", "lücke"}) {
    for (const bool isNew : {true, false}) {
      const Result result = Run(isNew ? std::string("compare ganz ") + side : "compare " + std::string(side) + " ganz");
      EXPECT_EQ(result.status, 3) << side;
      EXPECT_EQ(result.out, "Keine Unterschiede\n") << side;
      EXPECT_NE(result.err.find("Nicht verglichen: Modul n"), std::string::npos) << result.err;
    }
  }
}

/// What can't be read is named and never counts as gone.
TEST_F(CompareTest, StatusesAndGaps) {
  Write("leer/x.txt", "");
  Write("teil/m.bas", kOld);
  Write("ganz/m.bas", kOld);
  Write("ganz/n.bas", "Sub N()\nEnd Sub\n");
  Write("teil/n.bas", std::string("Sub N()\0End Sub\n", 16));
  const struct {
    const char* line;
    int status;
    const char* out;
  } cases[] = {
      {"compare alt weg", 3, ""},
      {"compare leer alt", 3, ""},
      {"compare ganz teil", 3, "Keine Unterschiede\n"},
      {"compare teil ganz", 3, "Keine Unterschiede\n"},
      {"compare alt", 2, ""},
      {"compare alt neu neu", 2, ""},
      {"compare --json --md alt neu", 2, ""},
      {"compare --ignore farbe alt neu", 2, ""},
      {"compare -o alt/m.bas alt neu", 2, ""},
      {"compare --html neu/m.bas alt neu", 2, ""},
      {"compare git:-x:alt neu", 2, ""},
      {"compare git:HEAD neu", 2, ""},
  };
  for (const auto& c : cases) {
    const Result result = Run(c.line);
    EXPECT_EQ(result.status, c.status) << c.line << result.err;
    EXPECT_EQ(result.out, c.out) << c.line;
    EXPECT_NE(result.err, "") << c.line;
  }
  EXPECT_EQ(Read("alt/m.bas"), kOld);
}

}  // namespace
}  // namespace quillmate::cli
