#include <string>
#include <string_view>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

class UnderstandingTest : public CliTest {
 protected:
  UnderstandingTest() {
    Write("q/Gruss.bas", kGreeting);
    Write("q/Karte.cls", kCard);
    Write("q/Kurz.bas", "Sub Start(): Anfang: Summe 1, 2: End Sub\n");
  }
};

/// One routine on its line, modules of one line, the file's own lines after a header.
TEST_F(UnderstandingTest, ExactLists) {
  const std::string json = Run("modules --exact --json q").out;
  for (const char* const part :
       {"\"rou_name\":\"Offen\",\"rou_typ\":1,\"rou_open\":3,\"anz_dec_zeilen\":1,\"rou_start\":10,\"rou_ende\":10,"
        "\"source_line\":11}",
        "\"rou_name\":\"Name\",\"rou_typ\":4,\"rou_open\":1,\"anz_dec_zeilen\":1,\"rou_start\":2,\"rou_ende\":4,"
        "\"source_line\":7}",
        "\"mod_name\":\"Kurz\",\"mod_typ\":2,\"mod_zeilen\":1"}) {
    EXPECT_NE(json.find(part), std::string::npos) << part << json;
  }
  EXPECT_EQ(Run("outline --exact q").out,
            "Gru\xC3\x9F\n\tAnfang\n\tOffen\n\tSumme\n\tZeit\nKurz\n\tStart\nKarte\n\tName\n");
}

TEST_F(UnderstandingTest, CallsAsGraph) {
  EXPECT_EQ(Run("calls --dot --down --module Kurz --routine Start q").out,
            "digraph Aufrufe {\n  rankdir=LR;\n  node [shape=box];\n  \"Kurz.Start\";\n"
            "  \"Kurz.Start\" -> \"Gru\xC3\x9F.Anfang\";\n  \"Kurz.Start\" -> \"Gru\xC3\x9F.Summe\";\n}\n");
}

/// Sorted by bytes, as editors expect it; the line is the file's.
TEST_F(UnderstandingTest, Tags) {
  const std::string tags = Run("tags q").out;
  const std::size_t first = tags.find("Anfang\t" + Full("q/Gruss.bas") + "\t3;\"\tkind:sub\t");
  EXPECT_NE(first, std::string::npos) << tags;
  EXPECT_LT(first, tags.find("Karte.cls\t7;\"\tkind:property-get\t"));
  EXPECT_EQ(tags.find("\na\t"), std::string::npos) << "parameters are no tags";
  const std::string emacs = Run("tags --format emacs q").out;
  EXPECT_NE(emacs.find("Property Get Name\x7fName\x01"
                       "7,\n"),
            std::string::npos)
      << emacs;
}

/// The control of a sheet, from an Attribute line; who calls a handler is told once, with its parameter too.
TEST_F(UnderstandingTest, SheetWithControl) {
  Write("b/Blatt.cls",
        "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"Blatt\"\nAttribute VB_PredeclaredId = True\n"
        "Attribute VB_Base = \"0{00020820-0000-0000-C000-000000000046}\"\n"
        "Attribute VB_Control = \"cmd, 1, 0, MSForms, CommandButton\"\nPrivate Sub cmd_Click(): End Sub\n"
        "Private Sub Worksheet_Change(ByVal Target): End Sub\n");
  EXPECT_NE(Run("symbols --json b").out.find("\"type\":\"MSForms.CommandButton\""), std::string::npos);
  EXPECT_EQ(
      Run("unused --exact b").out,
      "Blatt\n\tSub cmd_Click, Zeile 1 (host: Ereignis Click von cmd)\n"
      "\tSub Worksheet_Change, Zeile 2 (host: Ereignis Change von Worksheet)\n"
      "\tParameter Target in Worksheet_Change, Zeile 2 (host: Parameter, den der Aufrufer vorgibt: Ereignis Change "
      "von Worksheet)\n");
}

/// A name that many modules have is listed with the first of them; the others count what they lack. Nothing is listed
/// once for each of many meanings.
TEST_F(UnderstandingTest, UsesThatMayMeanMany) {
  constexpr int kModules = 40;
  for (int module = 0; module < kModules; ++module) {
    Write("v/M" + std::to_string(10 + module) + ".bas", "Public Sub R(): R: M10.R: End Sub\n");
  }
  Write("v/N.bas", "Sub A(): R: Call R: End Sub\n");
  const auto count = [](std::string_view text, std::string_view part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++found;
    return found;
  };
  const std::string json = Run("symbols --json v").out;
  EXPECT_EQ(count(json, "\"candidates\":40"), 2 * 16) << json;
  EXPECT_EQ(count(json, "],\"omitted\":2}"), kModules - 16) << json;
  EXPECT_EQ(count(Run("symbols v").out, "    2 weitere, die auch viele andere meinen können\n"), kModules - 16);
  EXPECT_EQ(count(Run("references --json --module M49 --name R v").out, "\"ambiguous\""), 2);
  EXPECT_EQ(count(Run("references --module N --name R v").out, "N.bas:1:"), 2);
}

/// A list of what is known lets later runs fail on new things only, wherever they moved to.
TEST_F(UnderstandingTest, BaselineOfUnused) {
  EXPECT_EQ(Run("unused --exact --write-baseline alt.txt q").status, 0);
  EXPECT_EQ(Run("unused --baseline alt.txt q"), Success());
  Write("q/Kurz.bas", "' Neu\n\nSub Start(): Anfang: Summe 1, 2: End Sub\nPrivate Sub Neu()\nEnd Sub\n");
  EXPECT_EQ(Run("unused --baseline alt.txt q"), (Result{1, "Kurz\n\tSub Neu, Zeile 4 (sicher: nirgends verwendet)\n",
                                                        Messages({"Unbenutztes, das nicht in der Liste steht: 1"})}));
  EXPECT_EQ(Run("unused --baseline alt.txt --fail-on host q").status, 0);
  EXPECT_EQ(Run("unused --baseline q/Kurz.bas q").status, 1);
}

}  // namespace
}  // namespace quillmate::cli
