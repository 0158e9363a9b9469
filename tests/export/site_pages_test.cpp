#include "site_folder_fixture.h"

namespace quillmate::output {
namespace {

TEST_F(SiteTest, CommentsAboveOrBelowTheHeader) {
  const struct {
    std::string_view code;
    Lines lines;
    std::string comment;
  } cases[] = {
      {"{' fern}\n\n\t{'  eins}\n{''zwei & \251 _\nfort}\n<Sub X>\n{' unten}", {6}, "eins\nzwei &amp; ©\nfort"},
      {"x = 1 {' dahinter}\n<Sub X( _\ny)>\n {' unten}\n{'}\n{' ---}\n{' noch}\nz\n{' weg}",
       {2, 9, 2},
       "unten\n\nnoch"},
      {"{'*****}\n{' Kasten}\n{'*****}\n<Sub X>", {4}, "Kasten"},
      {"{'*****}\n<Sub X>\n  {' unten}", {2}, "unten"},
      {"<Sub X>\n\n{' weg}", {1}, ""},
      {"<Sub X>\n~\"'s\"^", {1}, ""},
  };
  for (const auto& c : cases) {
    project_.modules.clear();
    AddModule("m", codedb::kStandard, Marked(c.code));
    AddRoutine("X", c.lines);
    const auto files = Write();
    const std::string routine = Part(files.at("modul-m.html"), "</code></pre>", "<dl");
    const std::string note = c.comment.empty() ? "" : "<p class=\"note\">" + c.comment + "</p>\n";
    EXPECT_EQ(routine, "</code></pre>\n" + note) << c.code;
  }
}

/// Marks of documentation comments are read; what only looks like one stays.
TEST_F(SiteTest, MarkedComments) {
  const struct {
    std::string_view lines;
    std::string text;
    std::string items;  ///< title, name and text of each
  } cases[] = {
      {"''' <summary>Bucht &amp; <c>prüft</c>,|''' siehe <see cref=\"Los\"/>.</summary>|''' <param name=\"n\">Die "
       "Nummer</param>|''' <param name='m'/>|''' <returns>True &lt;=&gt; gut</returns>|"
       "''' <remarks><para>Eins</para><para>Zwei</para></remarks>",
       "Bucht &amp; prüft,\nsiehe Los.",
       "Parameter n: Die Nummer|Parameter m: |Rückgabe: True &lt;=&gt; gut|Anmerkung: Eins\nZwei|"},
      {"' @brief Bucht|' genau.|' @param n Die Nummer,|'   mehrzeilig|' @param {Long} m - Anzahl|' @return True|'|' "
       "Danach",
       "Bucht\ngenau.\n\nDanach", "Parameter n: Die Nummer,\nmehrzeilig|Parameter m: Anzahl|Rückgabe: True|"},
      {"'! \\brief Kurz|'!|'! \\param[in] x Wert|'! \\throws 5 wenn leer", "Kurz",
       "Parameter x: Wert|Fehler 5: wenn leer|"},
      {"'@Description(\"Rechnet.\")|'@Folder(\"Kern\")", "Rechnet.\n@Folder(&quot;Kern&quot;)", ""},
      {"'* Kasten *|'** Rest **", "Kasten\nRest", ""},
      {"Rem Alt", "Alt", ""},
      {"' a < b und <x> bleibt, mail@param.de, C:\\brief", "a &lt; b und &lt;x&gt; bleibt, mail@param.de, C:\\brief",
       ""},
      {"' <summary> ohne Ende <", "ohne Ende &lt;", ""},
  };
  for (const auto& c : cases) {
    project_.modules.clear();
    std::string code;
    std::int32_t line = 1;
    for (const std::string_view text : text::Split(c.lines, "|")) {
      code += std::string(text::CommentOpen) + text::CodeFromUtf8(text) + std::string(text::SpanClose) + "\r\n";
      ++line;
    }
    AddModule("m", codedb::kStandard, code + Marked("<Sub X>\n"));
    AddRoutine("X", {line});
    const std::string page = Write().at("modul-m.html");
    std::string items;
    for (const std::string_view item : text::Split(c.items, "|")) {
      if (item.empty()) continue;
      const std::string_view head = text::TextBefore(item, ": ");
      const std::string_view title = text::TextBefore(head, " ");
      const std::string name = title == head ? "" : " <code>" + std::string(head.substr(title.size() + 1)) + "</code>";
      items.append("<dt>").append(title).append(name).append("</dt>\n<dd>").append(item.substr(head.size() + 2));
      items += "</dd>\n";
    }
    if (!items.empty()) items = "<dl class=\"pairs\">\n" + items + "</dl>\n";
    const std::string routine = Part(page, "<h3", "</section>");
    EXPECT_NE(routine.find("</code></pre>\n<p class=\"note\">" + c.text + "</p>\n" + items +
                           "<dl class=\"pairs\">\n<dt>Aufgerufen"),
              std::string::npos)
        << c.lines << "\n"
        << routine;
  }
}

TEST_F(SiteTest, StartPageTellsAboutTheModules) {
  AddModule("mdlB", codedb::kStandard,
            Marked("[Option] Explicit\n\n{' Erster Satz,}\n{' zweite Zeile.}\n{'}\n{' Mehr.}\n\nx"));
  AddModule("\304rger & Co", codedb::kOtherKind, Marked("{' geh\366rt zu X}\n<Sub X>\n<End>"));
  AddRoutine("X", {2, 3});
  AddModule("frmZ", codedb::kForm, Marked("{' Wort " + std::string(240, 'a') + "}\n"));
  AddModule("mdlA", codedb::kStandard, Marked("x\n{' zu sp\344t}"));
  project_.modules[0].lines = 1234567;
  project_.title = "a<b";
  const auto files = Write();
  EXPECT_EQ(Part(files.at("index.html"), "<p class=\"facts\">", "<table>"),
            "<p class=\"facts\">4 Module, 1.234.574 Zeilen, 1 Routine; ohne Aufruf: <a href=\"unbenutzt.html\">keine"
            "</a></p>\n");
  const auto row = [](const std::string& page, const std::string& name, const std::string& rest) {
    return "<tr><th scope=\"row\"><a href=\"" + page + "\">" + name + "</a></th><td class=\"kind\">" + rest +
           "</td></tr>\n";
  };
  const std::string numbers = "</td><td class=\"number\">";
  EXPECT_EQ(
      Part(files.at("index.html"), "<tbody>", "</tbody>"),
      "<tbody>\n" + row("modul-frmZ.html", "frmZ", "Userform" + numbers + "2" + numbers + "0</td><td>Wort …") +
          row("modul-mdlA.html", "mdlA", "Allgemeines Modul" + numbers + "2" + numbers + "0</td><td>") +
          row("modul-mdlB.html", "mdlB",
              "Allgemeines Modul" + numbers + "1.234.567" + numbers + "0</td><td>Erster Satz,\nzweite Zeile.") +
          row("modul-Aerger-Co.html", "Ärger &amp; Co", "Anderes Modul" + numbers + "3" + numbers + "1</td><td>"));
  EXPECT_NE(files.at("modul-mdlB.html").find("<title>mdlB – a&lt;b</title>"), std::string::npos);
}

/// Every page can be read without going through its navigation first.
TEST_F(SiteTest, LinksToTheContent) {
  AddModule("m", codedb::kStandard, "x");
  for (const auto& [name, page] : Write()) {
    const std::size_t skip = page.find("<body>\n<a class=\"skip\" href=\"#inhalt\">");
    EXPECT_TRUE(!name.ends_with(".html") || skip < page.find("<main id=\"inhalt\">")) << name;
  }
}

TEST_F(SiteTest, IndexOfRoutines) {
  AddModule("m1", codedb::kStandard, "x");
  for (const char* const name : {"zoo", "\304pfel", "Apfelmus", "_x", "apfel"}) AddRoutine(name, {});
  AddModule("m2", codedb::kClass, "x");
  AddRoutine("APFEL", {}, codedb::kGet);
  const auto files = Write();
  const auto entry = [](const std::string& address, const std::string& name, const std::string& where) {
    return "<li><a href=\"modul-" + address + "\">" + name + "</a> <small>" + where + "</small></li>\n";
  };
  EXPECT_EQ(Part(files.at("routinen.html"), "<h2", "</main>"),
            "<h2 id=\"Andere\">Andere</h2>\n<ul class=\"names\">\n" + entry("m1.html#r-_x", "_x", "Sub, m1") +
                "</ul>\n<h2 id=\"A\">A</h2>\n<ul class=\"names\">\n" + entry("m1.html#r-apfel", "apfel", "Sub, m1") +
                entry("m2.html#r-APFEL", "APFEL", "Property Get, m2") + entry("m1.html#r-Aepfel", "Äpfel", "Sub, m1") +
                entry("m1.html#r-Apfelmus", "Apfelmus", "Sub, m1") +
                "</ul>\n<h2 id=\"Z\">Z</h2>\n<ul class=\"names\">\n" + entry("m1.html#r-zoo", "zoo", "Sub, m1") +
                "</ul>\n");
}

TEST_F(SiteTest, GradesOfRoutinesWithoutCalls) {
  AddModule("m1", codedb::kStandard,
            "Sub Auto_Open()\r\nApplication.Run \"Los\": Gerufen\r\nEnd Sub\r\nPrivate Sub Los()\r\nEnd Sub\r\nPrivate "
            "Sub Gerufen()\r\n"
            "End Sub\r\nPrivate Sub Tot()\r\nEnd Sub\r\nPrivate Sub Selbst()\r\nSelbst\r\nEnd Sub");
  AddRoutine("Auto_Open", {1, 3});
  AddRoutine("Los", {4, 5});
  AddRoutine("Gerufen", {6, 7});
  AddRoutine("Tot", {8, 9});
  AddRoutine("Selbst", {10, 12});
  const auto files = Write();
  EXPECT_NE(files.at("index.html").find(">1 sicher, 1 nur selbst, 1 per Text, 1 vom Host</a>"), std::string::npos);
  EXPECT_NE(files.at("modul-m1.html").find("<p class=\"facts\">Projekt Lager, Datei Lager.xlsm</p>"),
            std::string::npos);
  const auto row = [](const std::string& name, const std::string& grade) {
    return "<tr><th scope=\"row\"><a href=\"modul-m1.html#r-" + name + "\">" + name +
           "</a> <small>Sub</small></th><td><a href=\"modul-m1.html\">m1</a></td><td>" + grade + "</td></tr>\n";
  };
  EXPECT_EQ(Part(files.at("unbenutzt.html"), "<tbody>", "</tbody>"),
            "<tbody>\n" + row("Auto_Open", "vom Host: Start durch den Host") +
                row("Los", "per Text: Name in einer Zeichenkette, m1:2") + row("Tot", "sicher") +
                row("Selbst", "nur selbst"));
}

TEST_F(SiteTest, NamesOfFilesAreSafeAndUnique) {
  for (const char* const name : {"Ma\337", "MASS", "mass-2", "mass", "\351t\351 & \200", "", "\200", "aux"}) {
    AddModule(name, codedb::kStandard, "x");
  }
  const std::string list = Write().at(kSiteListFile);
  EXPECT_EQ(list,
            "Quillmate HTML-Dokumentation\nstil.css\nindex.html\nroutinen.html\nunbenutzt.html\nabhaengigkeiten.html\n"
            "aufrufe.html\nbefunde.html\nkennzahlen.html\nsuche.html\nsuche.js\nsuche-e1.js\ndeklarationen.html\n"
            "modul-Mass.html\nmodul-MASS-2.html\nmodul-mass-2-2.html\nmodul-mass-3.html\nmodul-ete-.html\n"
            "modul-ohne-Namen.html\nmodul-ohne-Namen-2.html\nmodul-aux.html\n");
}

TEST_F(SiteTest, ColoursAreExactOnWhiteAndReadableOnDark) {
  const struct {
    std::int32_t colour;
    std::string light, dark;
  } cases[] = {
      {8388608, "#000080", "#A3A3FF"},  {32768, "#008000", "#00C700"},    {128, "#800000", "#FF8A8A"},
      {0, "#000000", "#ABABAB"},        {0xFFFFFF, "#FFFFFF", "#FFFFFF"}, {0x2200FF00, "#00FF00", "#00FF00"},
      {0x00FFFF, "#FFFF00", "#FFFF00"},
  };
  for (const auto& c : cases) {
    text::CodeLook look = settings::LookOf({});
    look.keywordColour = c.colour;
    const std::string css = Write(look).at("stil.css");
    const std::size_t dark = css.find("@media (prefers-color-scheme:dark)");
    EXPECT_NE(css.substr(0, dark).find("--k:" + c.light + ";"), std::string::npos);
    EXPECT_EQ(css.substr(css.find("--k:", dark), 11), "--k:" + c.dark);
    EXPECT_NE(css.substr(css.find("@media print")).find("--k:" + c.light + ";"), std::string::npos);
  }
}

}  // namespace
}  // namespace quillmate::output
