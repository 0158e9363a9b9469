#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// Standard module "Haupt": calls across modules, a call by name, a routine that nothing names.
constexpr std::string_view kMain =
    "Attribute VB_Name = \"Haupt\"\n"
    "Public Sub Auto_Open()\n"
    "    Anfang: Application.Run \"Sp\344t\"\n"
    "End Sub\n"
    "Private Sub Sp\344t()\n"
    "    x = Gru\337.Summe(1, 2) ' anfang\n"
    "End Sub\n"
    "Sub \334brig()\n"
    "End Sub\n";

class CodeCommands : public CliTest {
 protected:
  CodeCommands() {
    Write("haupt.bas", kMain);
    Write("gruss.bas", kGreeting);
    Write("karte.cls", kCard);
  }
};

TEST_F(CodeCommands, AnswerInTextAndJson) {
  const struct {
    std::vector<std::string> command;
    std::string out;
    std::string err;
    int status;
  } cases[] = {
      {{"unused"},
       "Haupt\n\tAuto_Open (host)\n\tÜbrig (sicher)\n\tSpät (text)\nGruß\n\tOffen (sicher)\n\tZeit (sicher)\n",
       "",
       0},
      {{"unused", "--json", "--only", "text", "--only=host"},
       "[\n{\"mod_num\":1,\"mod_name\":\"Haupt\",\"rou_name\":\"Auto_Open\",\"class\":\"host\"},\n"
       "{\"mod_num\":1,\"mod_name\":\"Haupt\",\"rou_name\":\"Spät\",\"class\":\"text\"}\n]\n",
       "",
       0},
      {{"unused", "--only", "host", "--fail-on", "sicher"},
       "Haupt\n\tAuto_Open (host)\n",
       "Nie aufgerufene Routinen, die es nicht geben soll: 3",
       1},
      {{"callers", "--module", "gruß", "--routine", "ANFANG"}, "Haupt\n\tAuto_Open\nGruß\n\tAnfang\n", "", 0},
      {{"callers", "--json", "--module", "Gruß", "--routine", "Summe"},
       "[\n{\"mod_num\":1,\"mod_name\":\"Haupt\",\"routines\":[\n{\"rou_num\":2,\"rou_name\":\"Spät\"}\n]},\n"
       "{\"mod_num\":2,\"mod_name\":\"Gruß\",\"routines\":[\n{\"rou_num\":7,\"rou_name\":\"Summe\"}\n]}\n]\n",
       "",
       0},
      {{"callers", "--module", "Karte", "--routine", "Name"},
       "",
       "Property wird von der Routinensuche nicht unterstützt: Name",
       1},
      {{"callers", "--module", "Karte", "--routine", "→"}, "", "Infos zu Routine nicht gefunden: →", 1},
      {{"callers", "--module", "Nirgends", "--routine", "Name"}, "", "Es gibt kein Modul \"Nirgends\"", 1},
      {{"definition", "--module", "Karte", "--name", "übrig"}, "Haupt:7\n", "", 0},
      {{"definition", "--json", "--module", "karte", "--name", "NAME"},
       "{\"mod_num\":3,\"mod_name\":\"Karte\",\"rou_start\":2}\n",
       "",
       0},
      {{"definition", "--json", "--module", "Karte", "--name", "Spät"},
       "null\n",
       "Vom Modul \"Karte\" aus ist keine Routine \"Spät\" zu sehen",
       1},
      {{"search", " ANFANG "},
       "Haupt:2:     Anfang: Application.Run \"Spät\"\n"
       "Haupt:5:     x = Gruß.Summe(1, 2) ' anfang\n"
       "Gruß:2: Public Sub Anfang()\n",
       "",
       0},
      {{"search", "--json", "--whole-word", "ÜBRIG"},
       "[\n{\"mod_num\":1,\"mod_name\":\"Haupt\",\"line\":7,\"text\":\"Sub Übrig()\"}\n]\n",
       "",
       0},
      {{"search", "--json", "--whole-word", "brig"}, "[]\n", "", 0},
      {{"search", "→"}, "", "", 0},
  };
  EXPECT_EQ(Run({"index", "-o", "p", "haupt.bas", "gruss.bas", "karte.cls"}).status, 0);
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.command;
    arguments.emplace_back("p");
    const Result result = Run(arguments);
    EXPECT_EQ(result.out, c.out) << c.command[0];
    EXPECT_EQ(result.err, c.err.empty() ? "" : Messages({c.err}));
    EXPECT_EQ(result.status, c.status);
  }
  EXPECT_EQ(Run({"search", "Hallo {", "gruss.bas"}).out, "Gruß:3:     MsgBox \"Hallo {Welt}\" ' Grüße\n");
  Write("zwei.bas", "Declare Sub warte Lib \"a\" ()\nSub Warte()\n    Call Warte\nEnd Sub\n");
  Write("Gross.bas", "Attribute VB_Name = \"ZWEI\"\n'\n'\n'\n");
  EXPECT_EQ(Run({"callers", "--module", "zwei", "--routine", "Warte", "Gross.bas", "zwei.bas"}).out, "zwei\n\tWarte\n")
      << "two spellings of module and routine, and not the first one is meant";
}

TEST_F(CodeCommands, WrongUsage) {
  const std::vector<std::string> cases[] = {
      {"unused", "--only", "alle", "p"},
      {"unused", "--fail-on", "", "p"},
      {"callers", "--module", "Karte", "p"},
      {"callers", "--routine", "x", "p"},
      {"definition", "--name", "x", "p"},
      {"definition", "--module", "x", "p"},
      {"search", "p"},
      {"search", "  ", "p"},
      {"modules", "--whole-word", "p"},
  };
  for (const auto& arguments : cases) EXPECT_EQ(Run(arguments).status, 2) << arguments[0] << ' ' << arguments[1];
}

}  // namespace
}  // namespace quillmate::cli
