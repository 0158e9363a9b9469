#include "export/site_folder_fixture.h"

namespace quillmate::output {
namespace {

class SiteReportsTest : public SiteTest {
 protected:
  /// A and B need each other, C needs both, D nobody.
  SiteReportsTest() {
    AddModule("A", codedb::kStandard, Marked("<Sub Eins()>\nZwei\n[End Sub]\n"));
    AddRoutine("Eins", {1, 3});
    AddModule("B", codedb::kStandard, Marked("{' Ruft \"alles\"}\n<Sub Zwei()>\nEins\n[End Sub]\n"));
    AddRoutine("Zwei", {2, 4});
    AddModule("C", codedb::kStandard, Marked("<Sub Drei()>\nEins\nZwei\n[End Sub]\n"));
    AddRoutine("Drei", {1, 4});
    AddModule("D", codedb::kStandard, Marked("<Sub Vier()>\n[End Sub]\n"));
    AddRoutine("Vier", {1, 2});
  }
};

TEST_F(SiteReportsTest, DependenciesWithCycles) {
  const std::string page = Write().at("abhaengigkeiten.html");
  EXPECT_EQ(Part(page, "<ul>\n<li><a href=\"modul-A", "</ul>\n<h2>Matrix"),
            "<ul>\n<li><a href=\"modul-A.html\">A</a>, <a href=\"modul-B.html\">B</a></li>\n");
  for (const std::string_view row :
       {"<th scope=\"row\">1 <a href=\"modul-A.html\">A</a></th><td>–</td><td class=\"cycle\">1 "
        "↻</td><td></td><td></td>",
        "<th scope=\"row\">3 <a href=\"modul-C.html\">C</a></th><td>1</td><td>1</td><td>–</td><td></td>",
        "<th scope=\"row\"><a href=\"modul-A.html\">A</a></th><td><a href=\"modul-B.html\">B</a> (1, ↻)</td><td><a "
        "href=\"modul-B.html\">B</a> (1, ↻), <a href=\"modul-C.html\">C</a> (1)</td>"}) {
    EXPECT_NE(page.find(row), std::string::npos) << row << "\n" << page;
  }
}

/// What C calls unfolds, the circle of A and B ends where it closes; D calls nobody and has neither tree nor picture.
TEST_F(SiteReportsTest, CallTreesAndPictures) {
  const auto files = Write();
  const std::string one = "<a href=\"modul-A.html#r-Eins\">A.Eins</a>",
                    two = "<a href=\"modul-B.html#r-Zwei\">B.Zwei</a>";
  const std::string open = "\"><details><summary>", below = "</summary><ul>\n", end = "</ul></details></li>\n";
  EXPECT_EQ(
      Part(files.at("aufrufe.html"), "<ul class=\"tree\">", "</main>"),
      "<ul class=\"tree\">\n<li id=\"t-modul-C.Drei\"><details open><summary><a href=\"modul-C.html#r-Drei\">Drei</a>" +
          below + "<li id=\"t-modul-A.Eins" + open + one + below + "<li id=\"t-modul-B.Zwei" + open + two + below +
          "<li>" + one + " <small title=\"im Kreis\">↻</small></li>\n" + end + end + "<li>" + two +
          " <small><a href=\"aufrufe.html#t-modul-B.Zwei\">↗ dort aufgeklappt</a></small></li>\n" + end + "</ul>\n");
  const std::string picture = Part(files.at("modul-A.html"), "<svg", "</svg>");
  for (const char* const part :
       {"<text class=\"me\" x=\"450\" y=\"32\">Eins</text>",
        "<g class=\"in\"><a href=\"modul-B.html#r-Zwei\"><text x=\"284\" y=\"20\">B.Zwei</text></a>"
        "<a href=\"modul-C.html#r-Drei\">",
        "<g><a href=\"modul-B.html#r-Zwei\">"}) {
    EXPECT_NE(picture.find(part), std::string::npos) << part << "\n" << picture;
  }
  EXPECT_EQ(files.at("modul-D.html").find("<svg"), std::string::npos);
}

/// Routines of one name are told apart in the trees as everywhere.
TEST_F(SiteReportsTest, PropertiesInCallTrees) {
  AddModule("E", codedb::kStandard,
            Marked("<Sub Fuenf()>\nx = Wert\n[End Sub]\n<Property Get Wert()>\n[End Property]\n"));
  AddRoutine("Fuenf", {1, 3});
  AddRoutine("Wert", {4, 5}, codedb::kGet);
  EXPECT_NE(Write().at("aufrufe.html").find(">Wert (Get)</a>"), std::string::npos);
}

/// No matrix where nobody could read it.
TEST_F(SiteReportsTest, ManyModules) {
  for (int i = 4; i < 60; ++i) AddModule("M" + std::to_string(i), codedb::kStandard, "x\n");
  EXPECT_NE(Write().at("abhaengigkeiten.html").find("<h2>Matrix"), std::string::npos) << "60 can be read";
  AddModule("M60", codedb::kStandard, "x\n");
  const std::string page = Write().at("abhaengigkeiten.html");
  EXPECT_EQ(page.find("<h2>Matrix"), std::string::npos);
  EXPECT_NE(page.find("<h2>Nach Modulen"), std::string::npos);
}

/// Everything that is declared, with what is said of it, in the order of the names; each is found at its place.
TEST_F(SiteReportsTest, SearchEntries) {
  project_.modules.clear();
  AddModule(
      "m1", codedb::kStandard,
      Marked(
          "{' Kopf}\n[Public Const] GRENZE = 5 {' oberste \"Zahl\" | x}\n{' Arten|von allem}\n[Public Enum] eArt\n  "
          "eKauf "
          "{'kauft}\n[End Enum]\n<[Sub] Los(Wert)>\n[Dim] z, grenze {' innen\tdrin}\n{' nichts}\nWeiter:\n[End Sub]"));
  AddRoutine("Los", {7, 11});
  AddModule("c2", codedb::kClass, Marked("{' Ruft \"alles\"}\n<[Sub] Los()>\n[End Sub]"));
  AddRoutine("Los", {2, 3});
  const auto files = Write();
  std::string found;
  for (const std::string& entry : SearchEntries(files)) found += entry + "\n";
  EXPECT_EQ(found,
            "c2: Klassenmodul c2 modul-c2.html \n"
            "eArt: Aufzählung m1 deklarationen.html#d-m1.eArt Arten|von allem\n"
            "eKauf: Aufzählungswert m1.eArt deklarationen.html#d-m1.eArt-eKauf kauft\n"
            "GRENZE: Konstante m1 deklarationen.html#d-m1.GRENZE oberste \"Zahl\" | x\n"
            "grenze: Variable m1.Los deklarationen.html#d-m1.Los-grenze innen drin\n"
            "Los: Sub m1 modul-m1.html#r-Los \n"
            "Los: Sub c2 modul-c2.html#r-Los Ruft \"alles\"\n"
            "m1: Allgemeines Modul m1 modul-m1.html Kopf\n"
            "Weiter: Sprungmarke m1.Los deklarationen.html#d-m1.Los-Weiter \n"
            "Wert: Parameter m1.Los deklarationen.html#d-m1.Los-Wert \n"
            "z: Variable m1.Los deklarationen.html#d-m1.Los-z innen drin\n");
  // Words of comments, each with the entries that have them, by their distance from the one before.
  const std::string& script = files.at("suche.js");
  EXPECT_EQ(ScriptString(script, "words:\""),
            "allem\nalles\narten\ndrin\ninnen\nkauft\nkopf\noberste\nruft\nvon\nzahl");
  EXPECT_EQ(ScriptString(script, "wordCounts:\""), "1 1 1 2 2 1 1 1 1 1 1");
  EXPECT_EQ(ScriptString(files.at("suche-w1.js"), "\"suche-w1\",\""), "1\n6\n1\n4 6\n4 6\n2\n7\n3\n6\n1\n3");
  EXPECT_NE(files.at("suche.html").find("<label for=\"suchfeld\">"), std::string::npos);
  EXPECT_NE(files.at("modul-c2.html").find("<form action=\"suche.html\" role=\"search\">"), std::string::npos);
}

/// More entries and words than one file of each holds.
TEST_F(SiteReportsTest, SearchInParts) {
  std::string code;
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(i);
    code += "[Dim] v" + number + " {' wort" + number + " a b c ab cd ef gh}\n";
  }
  AddModule("viele", codedb::kStandard, Marked(code));
  const auto files = Write();
  const std::vector<std::string> entries = SearchEntries(files);
  EXPECT_GT(entries.size(), 5000U);
  EXPECT_TRUE(files.contains("suche-e3.js") && files.contains("suche-w2.js"));
  const std::string parts = Part(files.at("suche.js"), "wordParts:[", "]");
  EXPECT_EQ(std::count(parts.begin(), parts.end(), ','), std::count_if(files.begin(), files.end(), [](const auto& f) {
                                                           return f.first.starts_with("suche-w");
                                                         }) - 1);
}

/// Kinds of declarations with their texts, places and uses.
TEST_F(SiteTest, DeclarationsWithTheirUses) {
  AddModule("m1", codedb::kStandard,
            "Public Const GRENZE As Long = 5 + 1 ' oben\r\nPublic Enum eArt: eKauf = 1: eTausch: End Enum\r\n"
            "Private Type tSatz\r\n  Nr As Long\r\nEnd Type\r\nPublic WithEvents o As c2, Ab#\r\n"
            "Sub Los(Optional ByVal n As String = \"a,b\")\r\nStatic z As New Collection: Dim s As tSatz\r\n"
            "s.Nr = GRENZE + eKauf: x = s.Nr + GRENZE\r\nWeiter: GoTo Weiter\r\nEnd Sub");
  AddRoutine("Los", {7, 11});
  AddModule("c2", codedb::kClass, "Public Event Fertig(ByVal Wie As Long)\r\nSub Tu()\r\nEnd Sub\r\nx = m1.GRENZE");
  AddRoutine("Tu", {2, 3});
  const std::string page = Write().at("deklarationen.html");
  /// The cells of an entry without tags, but for the links' addresses.
  const auto cells = [&](const std::string& anchor) {
    const std::string row = Part(page, "<tr id=\"d-" + anchor + "\">", "</tr>");
    std::string text;
    for (std::size_t at = 0; at < row.size(); ++at) {
      if (row[at] != '<') {
        text += row[at];
        continue;
      }
      const std::string_view tag = std::string_view(row).substr(at, row.find('>', at) - at);
      if (tag.starts_with("<td")) text += " | ";
      if (tag.starts_with("<a")) text += "[" + Attribute(tag, "href") + "]";
      at += tag.size();
    }
    return text;
  };
  const struct {
    const char *anchor, *expected;
  } cases[] = {
      {"m1.GRENZE",
       "GRENZE | Public Const GRENZE As Long = 5 + 1 | [modul-m1.html#z1]m1, Zeile 1 | "
       "liest [modul-m1.html#z9]m1 9, [modul-c2.html#z4]c2 4"},
      {"m1.eArt-eKauf", "eKauf (eArt) | eKauf = 1 | [modul-m1.html#z2]m1, Zeile 2 | liest [modul-m1.html#z9]m1 9"},
      {"m1.eArt-eTausch", "eTausch (eArt) | eTausch | [modul-m1.html#z2]m1, Zeile 2 | nirgends verwendet"},
      {"m1.tSatz", "tSatz | Private Type tSatz | [modul-m1.html#z3]m1, Zeile 3 | Typ [modul-m1.html#z8]m1 8"},
      {"m1.tSatz-Nr",
       "Nr (tSatz) | Nr As Long | [modul-m1.html#z4]m1, Zeile 4 | liest [modul-m1.html#z9]m1 9; schreibt "
       "[modul-m1.html#z9]m1 9"},
      {"m1.o", "o | Public WithEvents o As c2 | [modul-m1.html#z6]m1, Zeile 6 | nirgends verwendet"},
      {"m1.Ab", "Ab | Public Ab# | [modul-m1.html#z6]m1, Zeile 6 | nirgends verwendet"},
      {"m1.Los-n",
       "n | Optional ByVal n As String = &quot;a,b&quot; | [modul-m1.html#z7]m1.Los, Zeile 7 | nirgends verwendet"},
      {"m1.Los-z", "z | Static z As New Collection | [modul-m1.html#z8]m1.Los, Zeile 8 | nirgends verwendet"},
      {"m1.Los-x", "x | x nicht deklariert | [modul-m1.html#z9]m1.Los, Zeile 9 | nur geschrieben, nie gelesen"},
      {"m1.Los-Weiter", "Weiter | Weiter | [modul-m1.html#z10]m1.Los, Zeile 10 | springt [modul-m1.html#z10]m1 10"},
      {"c2.Fertig",
       "Fertig | Public Event Fertig(ByVal Wie As Long) | [modul-c2.html#z1]c2, Zeile 1 | nirgends verwendet"},
  };
  for (const auto& c : cases) EXPECT_EQ(cells(c.anchor), c.expected);
  EXPECT_EQ(page.find("d-c2.Fertig-Wie"), std::string::npos);
}

/// Long lists are divided by kind, letter and at last by number; every entry and every link is still there.
TEST_F(SiteTest, LongListsInSeveralPages) {
  constexpr int kCount = 3000;
  std::string code = "Sub B1()\r\nEnd Sub\r\nPublic Const ANFANG = 1\r\n";
  for (int i = 0; i < kCount; ++i) code += "Public v" + std::to_string(i) + ", w" + std::to_string(i) + "\r\n";
  AddModule("m1", codedb::kStandard, code);
  AddRoutine("B1", {1, 2});
  for (int i = 0; i < kCount; ++i) AddRoutine("a" + std::to_string(i), {});
  const auto files = Write();
  std::size_t entries = 0;
  for (const auto& [name, page] : files) {
    const bool isList = name.ends_with(".html") && name != "modul-m1.html";
    EXPECT_TRUE(!isList || page.size() < 1'000'000) << name;
    for (std::size_t at = page.find("<tr id=\"d-"); at != std::string::npos; at = page.find("<tr id=\"d-", at + 1)) {
      ++entries;
    }
  }
  EXPECT_EQ(entries, 2U * kCount + 2);
  for (const char* const name : {"deklarationen-konstanten.html", "deklarationen-variablen-v.html",
                                 "deklarationen-variablen-w-4.html", "routinen-a-2.html", "routinen-b.html"}) {
    EXPECT_TRUE(files.contains(name)) << name;
  }
  EXPECT_NE(files.at("deklarationen.html").find("<a href=\"deklarationen-variablen-w.html#variablen-w\">W</a>"),
            std::string::npos);
}

/// Findings and numbers stand on the module's page and on the overviews, with links to their lines and routines.
TEST_F(SiteTest, FindingsAndNumbers) {
  AddModule("m1", codedb::kStandard,
            "Option Explicit\r\nSub Weg()\r\nOn Error Resume Next\r\nKill \"a\": Hilf\r\nEnd Sub\r\n"
            "Private Sub Hilf()\r\nDim i As Long: For i = 1 To 3: If i = 2 Then Weg\r\nNext\r\nEnd Sub");
  AddRoutine("Weg", {2, 5});
  AddRoutine("Hilf", {6, 9}, codedb::kSub, codedb::kPrivate);
  const auto files = Write();
  const std::string& page = files.at("modul-m1.html");
  const std::string row =
      "<tr><td><a href=\"#z4\">Zeile 4</a></td><td><span class=\"hint\">hinweis</span></td><td>„Kill“ löscht Dateien.";
  const std::string section = Part(page, "<h2 id=\"befunde\">", "</table>");
  EXPECT_NE(section.find(row), std::string::npos) << section;
  const std::string numbers =
      "</a></th><td class=\"number\">4</td><td class=\"number\">4</td>"
      "<td class=\"number\">0</td><td class=\"number\">";
  EXPECT_NE(page.find("<a href=\"#r-Hilf\">Hilf" + numbers + "3</td><td class=\"number\">3</td>"), std::string::npos);
  EXPECT_NE(files.at("kennzahlen.html").find("<a href=\"modul-m1.html#r-Hilf\">m1.Hilf" + numbers), std::string::npos);
  const std::string& findings = files.at("befunde.html");
  EXPECT_NE(findings.find("<th scope=\"row\"><a href=\"#b-aussen-datei\">Liest, schreibt oder löscht Dateien</a></th>"
                          "<td><code>aussen-datei</code></td><td>Berührungspunkte</td><td class=\"number\">1</td>"),
            std::string::npos);
  EXPECT_NE(
      findings.find("<a href=\"modul-m1.html\">m1</a>.Weg, <a href=\"modul-m1.html#z4\">Zeile 4</a></td><td>„Kill“"),
      std::string::npos);
}

/// Where the code comes from, and what of it is missing.
TEST_F(SiteTest, SourcesAndOmissions) {
  AddModule("mdlA", codedb::kStandard, "[Sub] A()\n[End Sub]");
  const std::string plain = Write().at("index.html");
  EXPECT_EQ(plain.find("Projekt</th>"), std::string::npos);
  EXPECT_EQ(plain.find("Was hier fehlt"), std::string::npos);
  properties_ = {{"Autor", "Ada & Co"}};
  omissions_ = {{"/q/<zu>.xls", "VBAProject", "", "Das Projekt ist gesperrt"}};
  hasSecondProject_ = true;
  const std::string start = Write().at("index.html");
  for (const char* const part :
       {"<tr><th scope=\"col\">Projekt</th><th scope=\"col\">Modul</th>", "<tr><td>Lager</td><th scope=\"row\"><a",
        "<tr><td>/pfad/Lager.xlsm</td><td>Autor</td><td>Ada &amp; Co</td></tr>",
        "<tr><td>/q/&lt;zu&gt;.xls</td><td>VBAProject</td><td></td><td>Das Projekt ist gesperrt</td></tr>"}) {
    EXPECT_NE(start.find(part), std::string::npos) << part << "\n" << start;
  }
}

/// A form tells its controls with their captions and the events that its code handles; events of what is no control are
/// none.
TEST_F(SiteTest, ControlsOfAForm) {
  AddModule("frmEingabe", codedb::kForm,
            "Sub cmdOk_Click()\r\ntxtName.Text = \"\"\r\nEnd Sub\r\nSub CMDOK_Enter()\r\nEnd Sub\r\nSub "
            "weg_Click()\r\nEnd Sub");
  AddRoutine("cmdOk_Click", {1, 3});
  AddRoutine("CMDOK_Enter", {4, 5});
  AddRoutine("weg_Click", {6, 7});
  AddModule("ohne", codedb::kForm, "Sub a_Click()\r\nEnd Sub");
  controls_["frmEingabe"] = {{"cmdOk", "CommandButton", "&Über <nehmen>\nnun", {}, false, {}, {}, {}, {}, {}},
                             {"txtName", "TextBox", {}, {}, false, {}, {}, {}, {}, {}}};
  const auto files = Write();
  const std::string part = Part(files.at("modul-frmEingabe.html"), "<h2 id=\"steuerelemente\">", "</table>");
  for (const std::string_view row :
       {"<th scope=\"row\">cmdOk</th><td>CommandButton</td><td>&amp;Über &lt;nehmen&gt;\nnun</td><td>"
        "<a href=\"#r-cmdOk_Click\">Click</a>, <a href=\"#r-CMDOK_Enter\">Enter</a></td><td><a "
        "href=\"deklarationen.html#d-frmEingabe.cmdOk\">",
        "<th scope=\"row\">txtName</th><td>TextBox</td><td></td><td>keine</td><td><a "
        "href=\"deklarationen.html#d-frmEingabe.txtName\">1 Verwendung</a></td>"}) {
    EXPECT_NE(part.find(row), std::string::npos) << row << "\n" << part;
  }
  EXPECT_EQ(files.at("modul-ohne.html").find("steuerelemente"), std::string::npos);
}

/// Each project has lists of its own, though modules and names are the same.
TEST_F(SiteTest, DeclarationsOfSeveralProjects) {
  hasSecondProject_ = true;
  AddModule("m1", codedb::kStandard, "Public Const GRENZE = 1\r\nSub Los()\r\nx = GRENZE\r\nEnd Sub");
  AddRoutine("Los", {2, 4});
  AddModule("m2", codedb::kStandard, "Public Const GRENZE = 2\r\nSub Los()\r\nx = GRENZE\r\nEnd Sub");
  AddRoutine("Los", {2, 4});
  inSecondProject_ = {"m2"};
  const auto files = Write();
  const std::string& page = files.at("deklarationen.html");
  EXPECT_NE(page.find("<td>Zweites</td><th scope=\"row\"><a href=\"deklarationen.html#Zweites.konstanten\">"),
            std::string::npos);
  const std::string own = Part(page, "<h2 id=\"Lager.konstanten\">Lager: Konstanten</h2>", "</table>");
  const std::string second = Part(page, "<h2 id=\"Zweites.konstanten\">Zweites: Konstanten</h2>", "</table>");
  EXPECT_NE(own.find("<tr id=\"d-m1.GRENZE\">"), std::string::npos);
  EXPECT_EQ(own.find("modul-m2"), std::string::npos) << own;
  EXPECT_NE(second.find("<tr id=\"d-m2.GRENZE\">"), std::string::npos);
  EXPECT_EQ(second.find("modul-m1"), std::string::npos) << second;
  // The search tells the projects apart.
  const std::string entries = ScriptString(files.at("suche.js"), "modules:\"");
  EXPECT_EQ(entries, "Lager.m1\tmodul-m1.html\nZweites.m2\tmodul-m2.html");
}

}  // namespace
}  // namespace quillmate::output
