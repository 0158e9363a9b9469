#include <string>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

class CheckTest : public CliTest {
 protected:
  CheckTest() {
    Write("q/Haupt.bas",
          "Attribute VB_Name = \"Haupt\"\nOption Explicit\nSub Los(ByVal x As Long)\n  End\n  Range(\"A1\") = x\nEnd "
          "Sub\n");
  }
};

const std::string kEnd =
    "warnung: „End“ bricht alles sofort ab: Variablen werden geleert, Terminate-Ereignisse und Aufräumcode entfallen. "
    "[end-anweisung]\n";
const std::string kAfter =
    "warnung: Diese Anweisung wird nie ausgeführt: In Zeile 3 beendet „End“ das Programm. [code-nach-end]\n";

/// Lines are those of the file, in words those of the editor.
TEST_F(CheckTest, TextSelectionAndGates) {
  const std::string file = Full("q/Haupt.bas");
  EXPECT_EQ(Run("check --only end-anweisung --only CODE-nach-end q"),
            Success(file + ":4:3: " + kEnd + file + ":5:3: " + kAfter));
  EXPECT_EQ(Run("check --only end-anweisung --only code-nach-end --except code-nach-end --fail-on fehler q"),
            Success(file + ":4:3: " + kEnd));
  EXPECT_EQ(Run("check --only end-anweisung --fail-on hinweis q"),
            (Result{1, file + ":4:3: " + kEnd, Messages({"Befunde, die es nicht geben soll: 1"})}));
  EXPECT_EQ(Run("check --only typ-fehlt q"), Success());
  EXPECT_EQ(Run("check --only code-nach-end,END-Anweisung q").out.size(),
            Run("check --only end-anweisung --only code-nach-end q").out.size());
  EXPECT_EQ(Run("check --only=end-anweisung,code-nach-end --except=code-nach-end,pfad-fest q"),
            Success(file + ":4:3: " + kEnd));
  // An id that is not there, and the one that may be meant.
  const struct {
    const char* option;
    const char* id;
    const char* nearest;
  } unknown[] = {{"--only end-anweisun", "end-anweisun", "end-anweisung"},
                 {"--except pfad-fest,Zeiger-in-Logn", "Zeiger-in-Logn", "zeiger-in-long"},
                 {"--only unbekannt-und-fern", "unbekannt-und-fern", ""},
                 {"--only registrierung", "registrierung", "aussen-registrierung"},
                 {"--only=", "", ""},
                 {"--only pfad-fest,,set-fehlt", "", ""}};
  for (const auto& test : unknown) {
    const Result result = Run(std::string("check ") + test.option + " q");
    const std::string nearest = *test.nearest == '\0' ? "" : std::string(", gemeint ist vielleicht ") + test.nearest;
    EXPECT_EQ(result.status, 2) << test.option;
    EXPECT_NE(result.err.find("Unbekannte Prüfung \"" + std::string(test.id) + "\"" + nearest + "; "),
              std::string::npos)
        << result.err;
  }
  EXPECT_EQ(Run("check --fail-on schlimm q").status, 2);
  EXPECT_EQ(Run("check --json --sarif q").status, 2);
  EXPECT_EQ(Run("check").status, 2);
  EXPECT_NE(
      Run("check --list").out.find("  typ-fehlt                   hinweis  Deklaration ohne Typ (nur auf Verlangen)\n"),
      std::string::npos);
}

TEST_F(CheckTest, Baseline) {
  EXPECT_EQ(Run("check --only end-anweisung --write-baseline alt.txt q").status, 0);
  EXPECT_EQ(Read("alt.txt"), "quillmate-befunde 1\nq\tHaupt\tend-anweisung\tLos\tEnd\n");
  Write("q/Haupt.bas",
        "Attribute VB_Name = \"Haupt\"\n' Neu\nSub Los(ByVal x As Long)\n  If x Then End\n  If x > 1 Then End\nEnd "
        "Sub\n");
  const Result result = Run("check --only end-anweisung --baseline alt.txt q");
  EXPECT_EQ(result, (Result{1, Full("q/Haupt.bas") + ":5:17: " + kEnd,
                            Messages({"Befunde, die nicht in der Liste stehen: 1"})}));
  EXPECT_EQ(Run("check --only end-anweisung --baseline alt.txt --fail-on fehler q").status, 0);
  EXPECT_EQ(Run("check --baseline q/Haupt.bas q").status, 1);
}

TEST_F(CheckTest, Forms) {
  const std::string json = Run("check --only end-anweisung --json q").out;
  for (const char* const part :
       {"[\n{\"id\":\"end-anweisung\",\"severity\":\"warnung\",\"file\":\"", "\"project\":\"q\",\"module\":\"Haupt\"",
        "\"routine\":\"Los\",\"line\":3,\"column\":3,\"source_line\":4,\"text\":\"", "\"advice\":\"Verlassen Sie"}) {
    EXPECT_NE(json.find(part), std::string::npos) << part << json;
  }
  const std::string csv = Run("check --only end-anweisung --csv q").out;
  EXPECT_NE(csv.find("\r\nend-anweisung;warnung;Ablauf;" + Full("q/Haupt.bas") + ";q;Haupt;Los;3;3;4;"),
            std::string::npos)
      << csv;
  const std::string sarif = Run("check --only end-anweisung --sarif q").out;
  for (const char* const part :
       {"\"version\":\"2.1.0\"", "{\"id\":\"end-anweisung\",\"shortDescription\":",
        "\"defaultConfiguration\":{\"level\":\"warning\",\"enabled\":true}",
        "{\"ruleId\":\"end-anweisung\",\"ruleIndex\":",
        "\"artifactLocation\":{\"uri\":\"q/Haupt.bas\"},\"region\":{\"startLine\":4,\"startColumn\":3}",
        "\"fullyQualifiedName\":\"q.Haupt.Los\",\"kind\":\"function\"",
        "\"partialFingerprints\":{\"quillmate/v1\":\""}) {
    EXPECT_NE(sarif.find(part), std::string::npos) << part << sarif;
  }
}

TEST_F(CheckTest, Metrics) {
  const std::string json = Run("metrics --json q").out;
  for (const char* const part : {"\"module\":\"Haupt\",\"lines\":5,\"code\":5,\"comment\":0,\"blank\":0,\"routines\":[{"
                                 "\"routine\":\"Los\",\"routine_"
                                 "kind\":\"sub\",\"line\":2,\"lines\":4,\"code\":4,\"comment\":0,\"statements\":2,"
                                 "\"complexity\":1,\"nesting\":0,"
                                 "\"parameters\":1,\"fan_in\":0,\"fan_out\":0}]}",
                                 "\"definitions\":{\"modules\":{\"lines\":\"", "\"complexity\":\"Nach McCabe: "}) {
    EXPECT_NE(json.find(part), std::string::npos) << part << json;
  }
  EXPECT_NE(Run("metrics --csv q").out.find(";q;Haupt;Los;Sub;2;4;4;0;;2;1;0;1;0;0\r\n"), std::string::npos);
  EXPECT_EQ(Run("metrics --json --csv q").status, 2);
}

}  // namespace
}  // namespace quillmate::cli
