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
  const std::string main = Origin("haupt.bas", "haupt");
  const struct {
    const char* line;
    Result expected;
  } cases[] = {
      {"unused", Success("Haupt\n\tAuto_Open (host)\n\tÜbrig (sicher)\n\tSpät (text)\n"
                         "Gruß\n\tOffen (sicher)\n\tZeit (sicher)\n")},
      {"unused --json --only text --only=host",
       Success("[\n{\"mod_num\":1,\"mod_name\":\"Haupt\",\"rou_name\":\"Auto_Open\",\"class\":\"host\"," + main +
               ",\"source_line\":2},\n"
               "{\"mod_num\":1,\"mod_name\":\"Haupt\",\"rou_name\":\"Spät\",\"class\":\"text\"," +
               main + ",\"source_line\":5}\n]\n")},
      {"unused --only host --fail-on sicher",
       {1, "Haupt\n\tAuto_Open (host)\n", Messages({"Nie aufgerufene Routinen, die es nicht geben soll: 3"})}},
      {"callers --module gruß --routine ANFANG", Success("Haupt\n\tAuto_Open\nGruß\n\tAnfang\n")},
      {"callers --json --module Gruß --routine Summe",
       Success("[\n{\"mod_num\":1,\"mod_name\":\"Haupt\"," + main +
               ",\"routines\":[\n{\"rou_num\":2,\"rou_name\":\"Spät\",\"source_line\":5}\n]},\n"
               "{\"mod_num\":2,\"mod_name\":\"Gruß\"," +
               Origin("gruss.bas", "gruss") +
               ",\"routines\":[\n{\"rou_num\":7,\"rou_name\":\"Summe\",\"source_line\":7}\n]}\n]\n")},
      {"callers --module Karte --routine Name",
       Refusal(1, {"Property wird von der Routinensuche nicht unterstützt: Name"})},
      {"callers --module Karte --routine →", Refusal(1, {"Infos zu Routine nicht gefunden: →"})},
      {"callers --module Nirgends --routine Name", Refusal(1, {"Es gibt kein Modul \"Nirgends\""})},
      {"definition --module Karte --name übrig", Success("Haupt:7\n")},
      {"definition --json --module karte --name NAME",
       Success("{\"mod_num\":3,\"mod_name\":\"Karte\",\"rou_start\":2," + Origin("karte.cls", "karte") +
               ",\"source_line\":7}\n")},
      {"definition --json --module Karte --name Spät",
       {1, "null\n", Messages({"Vom Modul \"Karte\" aus ist keine Routine \"Spät\" zu sehen"})}},
      {"search ' ANFANG '", Success("Haupt:2:     Anfang: Application.Run \"Spät\"\n"
                                    "Haupt:5:     x = Gruß.Summe(1, 2) ' anfang\n"
                                    "Gruß:2: Public Sub Anfang()\n")},
      {"search --json --whole-word ÜBRIG",
       Success("[\n{\"mod_num\":1,\"mod_name\":\"Haupt\",\"line\":7,\"text\":\"Sub Übrig()\"," + main +
               ",\"source_line\":8}\n]\n")},
      {"search --json --whole-word brig", Success("[]\n")},
      {"search →", Success()},
  };
  ASSERT_EQ(Run("index -o p haupt.bas gruss.bas karte.cls"), Success());
  for (const auto& c : cases) EXPECT_EQ(Run(std::string(c.line) + " p"), c.expected) << c.line;
  EXPECT_EQ(Run("search 'Hallo {' gruss.bas").out, "Gruß:3:     MsgBox \"Hallo {Welt}\" ' Grüße\n");
  Write("zwei.bas", "Declare Sub warte Lib \"a\" ()\nSub Warte()\n    Call Warte\nEnd Sub\n");
  Write("Gross.bas", "Attribute VB_Name = \"ZWEI\"\n'\n'\n'\n");
  EXPECT_EQ(Run("callers --module zwei --routine Warte Gross.bas zwei.bas").out, "zwei\n\tWarte\n")
      << "two spellings of module and routine, and not the first one is meant";
}

/// The list is the fixed one, which knows names only in their own spelling; the classes are the understanding's,
/// whatever the layout does to the lines.
TEST_F(CodeCommands, ClassesOfUnusedRoutines) {
  Write("q/a.bas",
        "Attribute VB_Name = \"A\"\nPrivate Sub Selbst()\nselbst\nEnd Sub\n#If False Then\nSub Inaktiv()\nEnd "
        "Sub\n#End If\n"
        "Public Function Zelle()\nEnd Function\nSub Doch()\nEnd Sub\nPrivate Function Fern$()\nEnd Function\n"
        "Private Sub x_Click()\nx = \"laufen\"\nEnd Sub\nPrivate Sub Laufen()\nEnd Sub\nPrivate Sub Tot()\nEnd Sub\n");
  Write("q/b.bas", "Attribute VB_Name = \"B\"\nSub Auto_Open()\nDOCH\nEnd Sub\nPrivate Sub Tot()\ntot\nEnd Sub\n");
  Write("F.frm",
        "VERSION 5.00\nBegin VB.Form F\n   Begin VB.CommandButton cmdOk\n   End\nEnd\nAttribute VB_Name = \"F\"\n"
        "Private Sub cmdOk_Click()\nEnd Sub\nPrivate Sub cmdWeg_Click()\nEnd Sub\nPrivate Sub Form_Load()\nEnd Sub\n");
  const std::string list =
      "A\n\tDoch (möglich)\n\tInaktiv (inaktiv)\n\tZelle (möglich)\n\tSelbst (selbst)\n\tx_Click (sicher)\n"
      "\tLaufen (text)\n\tTot (sicher)\n\tFern$ (sicher)\nB\n\tAuto_Open (host)\n\tTot (selbst)\n";
  EXPECT_EQ(Run("unused q"), Success(list));
  EXPECT_EQ(Run("unused --option einr=-1 --option leer=-1 --option rle=-1 q"), Success(list));
  EXPECT_EQ(Run("unused --only möglich --only selbst --fail-on inaktiv q"),
            (Result{1, "A\n\tDoch (möglich)\n\tZelle (möglich)\n\tSelbst (selbst)\nB\n\tTot (selbst)\n",
                    Messages({"Nie aufgerufene Routinen, die es nicht geben soll: 1"})}));
  EXPECT_EQ(Run("unused F.frm"), Success("F\n\tcmdOk_Click (host)\n\tcmdWeg_Click (sicher)\n\tForm_Load (host)\n"));
}

TEST_F(CodeCommands, SearchByPatternAndForEditors) {
  Write("zwei.bas", "Attribute VB_Name = \"Zwei\"\nDim a\tAs Long, \304 As \tLong\nSub S(): a = \304: End Sub\n");
  Write("russisch.bas", "\357\273\277Attribute VB_Name = \"R\"\n'\n'\n  ' \320\226\320\226 Ende\n");
  const struct {
    const char* line;
    Result expected;
  } cases[] = {
      {"search --regex '^ +x = gr(u|ue)ß[.]' haupt.bas", Success("Haupt:5:     x = Gruß.Summe(1, 2) ' anfang\n")},
      {"search --regex --whole-word 's.b' gruss.bas",
       Success("Gruß:2: Public Sub Anfang()\nGruß:4: End Sub\nGruß:10: Friend Sub Offen(): End Sub\n"
               "Gruß:10: Friend Sub Offen(): End Sub\n")},
      {"search --regex 'x*' karte.cls", Success()},
      {"search --regex '→|λ' gruss.bas", Success()},
      // Modules of two lines count here; characters that the index lacks stand in the source's own line.
      {"search --format vimgrep long zwei.bas", Success(Full("zwei.bas") + ":2:10: Dim a\tAs Long, Ä As \tLong\n" +
                                                        Full("zwei.bas") + ":2:22: Dim a\tAs Long, Ä As \tLong\n")},
      {"search --regex --format vimgrep '[?] e' russisch.bas",
       {0, Full("russisch.bas") + ":4:6:   ' ЖЖ Ende\n",
        Messages({Full("russisch.bas") + ": 2 Zeichen wurden durch \"?\" ersetzt"})}},
      {"search --format vimgrep --option einr=-1 --option usb=-1 summe gruss.bas haupt.bas",
       Success(Full("gruss.bas") + ":7:10: Function Summe(ByVal a As Long, _\n" + Full("gruss.bas") +
               ":9:1: Summe = a + b\n" + Full("haupt.bas") + ":6:14:     x = Gruß.Summe(1, 2) ' anfang\n")},
      {"search --regex '(x+x+)+[12]' lang.bas", {1, "", Messages({"Der reguläre Ausdruck ist zu aufwendig"})}},
      {"search --regex 'a(b' karte.cls", Refusal(2, {"Der reguläre Ausdruck ist an Stelle 3 fehlerhaft: es fehlt )",
                                                     "Aufruf: quillmate-cli search [--whole-word] "
                                                     "[--regex] [--json] [--format FORM] [-o DATEI] TEXT EINGABE..."})},
  };
  Write("lang.bas", "'\n'\n'" + std::string(3000, 'x') + "\n");
  for (const auto& c : cases) EXPECT_EQ(Run(c.line), c.expected) << c.line;
}

/// A hit shows no more than a part of a long line: else a module that is found everywhere lists its square.
TEST_F(CodeCommands, SearchInALongLine) {
  Write("lang.bas", "'\n'\n'" + std::string(3000, '-') + "hier" + std::string(9, '+') + "\n");
  const std::string shown = std::string(1010, '-') + "hier" + std::string(9, '+');
  EXPECT_EQ(Run("search hier lang.bas").out, "lang:3: …" + shown + "\n");
  EXPECT_EQ(Run("search --json hier lang.bas").out, "[\n{\"mod_num\":1,\"mod_name\":\"lang\",\"line\":3,\"text\":\"" +
                                                        shown + "\"," + Origin("lang.bas", "lang") +
                                                        ",\"source_line\":3,\"cut\":true}\n]\n");
}

TEST_F(CodeCommands, WrongUsage) {
  for (const char* const line :
       {"unused --only alle p", "unused --fail-on '' p", "callers --module Karte p", "callers --routine x p",
        "definition --name x p", "definition --module x p", "search p", "search '  ' p", "modules --whole-word p"}) {
    EXPECT_EQ(Run(line).status, 2) << line;
  }
}

}  // namespace
}  // namespace quillmate::cli
