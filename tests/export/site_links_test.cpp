#include <random>

#include <quillmate/text/windows1252.h>

#include "site_folder_fixture.h"
#include "soup.h"

namespace quillmate::output {
namespace {

/// Code between the page's number of a line and that of the next one; the titles of links are taken out and added to
/// `titles`.
std::string Line(const std::string& page, int line, std::string* titles = nullptr) {
  const std::string number = std::to_string(line);
  const std::string from = "<span id=\"z" + number + "\">" + number + "</span>";
  std::string code =
      page.substr(page.find(from) + from.size(), page.find('\n', page.find(from)) - page.find(from) - from.size());
  constexpr std::string_view kTitle = " title=\"";
  for (std::size_t at = code.find(kTitle); at != std::string::npos; at = code.find(kTitle, at)) {
    const std::size_t end = code.find('"', at + kTitle.size());
    if (titles != nullptr) titles->append(code, at + kTitle.size(), end - at - kTitle.size()).append("|");
    code.erase(at, end + 1 - at);
  }
  return code;
}

TEST_F(SiteTest, NamesLeadToWhatTheyMean) {
  AddModule("mdlEins", codedb::kStandard,
            Marked("<[Private] [Sub] Eigene()>\n"
                   "\326ffne fremd2(1): EIGENE\n"
                   "[Dim] Geheim, k [As] clsDrei: Geheim = ~\"Eigene &\"^ {' \326ffne} < 3\n"
                   "mdlZwei.\366FFNE k.Breite: k.Breite = [Nothing]\n"
                   "<[End] [Sub]>\n"
                   "<[Sub] Sp\344t()>\n<[End] [Sub]>"));
  AddRoutine("Eigene", {1, 5}, codedb::kSub, codedb::kPrivate);
  AddRoutine("Sp\344t", {6, 7});
  AddModule(
      "mdlZwei", codedb::kStandard,
      Marked("<[Sub] \326ffne([ByVal] x)>\n<[End] [Sub]>\n\t<[Function] Fremd2 _\n\t  ([ByVal] Eigene)>\n"
             "\n\t\tFremd2 = Eigene + Fremd2(2)\n\t<[End] [Function]>\n<[Private] [Sub] Geheim()>\n<[End] [Sub]>"));
  AddRoutine("\326ffne", {1, 2});
  AddRoutine("Fremd2", {3, 7, 2});
  AddRoutine("Geheim", {8, 9}, codedb::kSub, codedb::kPrivate);
  originals_["mdlZwei"] =
      "Sub Öffne(ByVal x)\r\nEnd Sub\r\nFunction Fremd2 _\r\n    (ByVal Eigene)\r\n      Fremd2 = Eigene + "
      "Fremd2(2)\r\n"
      "End Function\r\nPrivate Sub Geheim()\r\nEnd Sub";
  AddModule(
      "clsDrei", codedb::kClass,
      Marked("<[Property] [Get] Breite()>\n<[End] [Property]>\n<[Property] [Let] Breite(x)>\n<[End] [Property]>"));
  AddRoutine("Breite", {1, 2}, codedb::kGet);
  AddRoutine("Breite", {3, 4}, codedb::kLet);
  const auto files = Write();
  const std::string& one = files.at("modul-mdlEins.html");
  const std::string& two = files.at("modul-mdlZwei.html");
  const auto link = [](const std::string& to, const std::string& name) {
    return "<a href=\"" + to + "\">" + name + "</a>";
  };
  const std::string open = "modul-mdlZwei.html#c-Oeffne";
  const std::string entry = "deklarationen.html#d-";
  std::string titles;
  EXPECT_EQ(Line(one, 1), "<b id=\"c-Eigene\"><span class=\"k\">Private</span> <span class=\"k\">Sub</span> " +
                              link("#r-Eigene", "Eigene") + "()</b>");
  EXPECT_EQ(Line(one, 2), link(open, "Öffne") + " " + link("modul-mdlZwei.html#c-Fremd2", "fremd2") +
                              "(1): " + link("#c-Eigene", "EIGENE"));
  EXPECT_EQ(Line(one, 3),
            "<span class=\"k\">Dim</span> " + link(entry + "mdlEins.Eigene-Geheim", "Geheim") + ", " +
                link(entry + "mdlEins.Eigene-k", "k") + " <span class=\"k\">As</span> " +
                link("modul-clsDrei.html", "clsDrei") + ": " + link("#z3", "Geheim") +
                " = <span class=\"s\">&quot;Eigene &amp;&quot;</span> <span class=\"c\">' Öffne</span> <b> 3</b>");
  EXPECT_EQ(Line(one, 4, &titles), "<b>" + link("modul-mdlZwei.html", "mdlZwei") + "." + link(open, "öFFNE") + " " +
                                       link("#z3", "k") + "." + link("modul-clsDrei.html#c-Breite", "Breite") + ": " +
                                       link("#z3", "k") + "." + link("modul-clsDrei.html#c-Breite-2", "Breite") +
                                       " = <span class=\"k\">Nothing</span></b>");
  EXPECT_EQ(Line(two, 4, &titles),
            "<b>\t  (<span class=\"k\">ByVal</span> " + link(entry + "mdlZwei.Fremd2-Eigene", "Eigene") + ")</b>");
  EXPECT_EQ(Line(two, 6, &titles), "\t\t" + link("#c-Fremd2", "Fremd2") + " = " + link("#z4", "Eigene") + " + " +
                                       link("#c-Fremd2", "Fremd2") + "(2)");
  EXPECT_EQ(titles,
            "Modul mdlZwei|mdlZwei: Public Sub Öffne(ByVal x)|Dim k As clsDrei|clsDrei: Public Property Get Breite()|"
            "Dim k As clsDrei|clsDrei: Public Property Let Breite(x)|1 Verwendung|"
            "Public Function Fremd2(ByVal Eigene)|Parameter ByVal Eigene|Public Function Fremd2(ByVal Eigene)|");
}

TEST_F(SiteTest, CallersAndCallsWithTheirLines) {
  AddModule("mdlA", codedb::kStandard,
            "Private o As Object\r\nSub Start()\r\nHilfe 1\r\nHilfe 2: o.Nutzt: Start\r\nApplication.Run "
            "\"Tot\"\r\nEnd Sub\r\n"
            "Private Sub Hilfe(ByVal Start)\r\nDim k As clsB: Start = k.Wert\r\nEnd Sub\r\nSub Tot()\r\nx = "
            "\"Auto_Open\"\r\nEnd Sub\r\n"
            "Sub Auto_Open()\r\nEnd Sub");
  AddRoutine("Start", {2, 6});
  AddRoutine("Hilfe", {7, 9}, codedb::kSub, codedb::kPrivate);
  AddRoutine("Tot", {10, 12});
  AddRoutine("Auto_Open", {13, 14});
  AddModule(
      "clsB", codedb::kClass,
      "Property Get Wert()\r\nEnd Property\r\nProperty Let Wert(x)\r\nEnd Property\r\nSub Nutzt()\r\nWert = Wert + 1"
      "\r\nmdlA.Start\r\nEnd Sub");
  AddRoutine("Wert", {1, 2}, codedb::kGet);
  AddRoutine("Wert", {3, 4}, codedb::kLet);
  AddRoutine("Nutzt", {5, 8});
  AddRoutine("Erfunden", {6, 6});
  const auto files = Write();
  /// Of the lists the texts alone.
  const auto pairs = [&](const std::string& page, const std::string& routine) {
    const std::string section = Part(files.at(page), "id=\"r-" + routine + "\"", "</section>");
    std::string text;
    bool inTag = false;
    for (const char c : section.substr(section.find("<dt>"))) {
      inTag = c == '<' || (inTag && c != '>');
      if (!inTag && c != '>') text += c == '\n' ? '|' : c;
    }
    return text;
  };
  const struct {
    const char *page, *routine, *expected;
  } cases[] = {
      {"modul-mdlA.html", "Start",
       "Aufgerufen von|Start Zeile 4, clsB.Nutzt Zeile 7|Ruft auf|Start Zeile 4, Hilfe Zeile 3, 4|"
       "Ruft möglicherweise auf|Tot Text, Zeile 5, clsB.Nutzt dem Namen nach, Zeile 4||"},
      {"modul-mdlA.html", "Hilfe", "Aufgerufen von|Start Zeile 3, 4|Ruft auf|clsB.Wert (Get) Zeile 8||"},
      {"modul-mdlA.html", "Tot",
       "Aufgerufen von|keiner Routine (Einstufung: per Text: Name in einer Zeichenkette, mdlA:5)|Möglicherweise von|"
       "Start Text, Zeile 5||"},
      {"modul-mdlA.html", "Auto_Open",
       "Aufgerufen von|keiner Routine (Einstufung: vom Host: Start durch den Host)|Von außerhalb|Start durch den "
       "Host||"},
      {"modul-clsB.html", "Wert", "Aufgerufen von|mdlA.Hilfe Zeile 8, Nutzt Zeile 6||"},
      {"modul-clsB.html", "Wert-2", "Aufgerufen von|Nutzt Zeile 6||"},
      {"modul-clsB.html", "Nutzt",
       "Aufgerufen von|keiner Routine (Einstufung: möglich: Element eines Objekts, dessen Typ der Code nicht nennt, "
       "mdlA:4)|Möglicherweise von|mdlA.Start dem Namen nach, Zeile 4|Ruft auf|mdlA.Start Zeile 7, Wert (Get) Zeile 6, "
       "Wert (Let) Zeile 6||"},
      {"modul-clsB.html", "Erfunden", "Aufgerufen von|unbekannt||"},
  };
  for (const auto& c : cases) EXPECT_EQ(pairs(c.page, c.routine), c.expected) << c.routine;
  EXPECT_NE(files.at("modul-mdlA.html").find("<a href=\"modul-clsB.html#z7\">7</a>"), std::string::npos);
}

/// Modules that no scanner makes: markers thrown together, routines with any lines, names of any kind.
TEST_F(SiteTest, EveryLinkLeadsSomewhere) {
  const std::string names[] = {"a",   "A", "\344", "ae",     "con",  "../x", "",  "\1<&>\"",
                               "a b", "n", "End",  "a\237b", "\200", "k",    "y", std::string(300, 'x')};
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 random(seed);
    project_.modules.clear();
    routineNumber_ = 0;
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (std::size_t m = below(5); m > 0; --m) {
      AddModule(names[below(std::size(names))], static_cast<int>(below(7)),
                MarkerSoup(static_cast<unsigned>(random()), below(80)));
      for (std::size_t r = below(8); r > 0; --r) {
        std::optional<std::int32_t> start(static_cast<std::int32_t>(below(9)) - 1);
        std::optional<std::int32_t> end(static_cast<std::int32_t>(below(12)) - 1);
        if (below(5) == 0) start.reset();
        if (below(5) == 0) end.reset();
        AddRoutine(names[below(std::size(names))], {start, end, static_cast<int>(below(4))},
                   static_cast<int>(1 + below(12)), static_cast<int>(1 + below(3)));
      }
    }
    project_.title = names[below(std::size(names))];
    const auto files = Write();
    ASSERT_FALSE(HasFailure()) << seed;
    ASSERT_TRUE(files == Write()) << seed;
  }
}

}  // namespace
}  // namespace quillmate::output
