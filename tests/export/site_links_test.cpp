#include <random>
#include <set>

#include <quillmate/text/windows1252.h>

#include "site_folder_fixture.h"
#include "soup.h"

namespace quillmate::output {
namespace {

/// What a page offers to links and where its own lead. Complains about tags that do not match.
struct PageLinks {
  std::set<std::string> ids;
  std::vector<std::string> targets;
};

std::string Attribute(std::string_view tag, std::string_view name) {
  const std::string key = " " + std::string(name) + "=\"";
  const std::size_t at = tag.find(key);
  return at == std::string_view::npos ? "" : std::string(text::TextBefore(tag.substr(at + key.size()), "\""));
}

PageLinks ReadPage(const std::string& file, const std::string& page) {
  PageLinks links;
  std::vector<std::string> open;
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"de\">")) << file;
  EXPECT_TRUE(text::IsValidUtf8(page)) << file;
  EXPECT_TRUE(
      std::none_of(page.begin(), page.end(), [](char c) { return c >= 0 && c < ' ' && c != '\t' && c != '\n'; }))
      << "control characters in " << file;
  for (std::size_t at = page.find('<', 1); at != std::string::npos; at = page.find('<', at + 1)) {
    const std::string_view tag = std::string_view(page).substr(at + 1, page.find('>', at) - at - 1);
    const std::string name(text::TextBefore(tag, " "));
    if (name.starts_with('/')) {
      EXPECT_FALSE(open.empty()) << file;
      if (open.empty()) return links;
      EXPECT_EQ("/" + open.back(), name) << file << " at " << at;
      open.pop_back();
    } else if (name != "meta" && name != "link" && name != "input") {
      open.push_back(name);
    }
    if (const std::string id = Attribute(tag, "id"); !id.empty()) {
      EXPECT_TRUE(links.ids.insert(id).second) << id << " twice in " << file;
    }
    if (const std::string target = Attribute(tag, "href"); !target.empty()) links.targets.push_back(target);
  }
  EXPECT_TRUE(open.empty()) << file;
  return links;
}

/// Every link of every page leads to a file and an anchor that are there; names are unique regardless of case.
void CheckSite(const std::map<std::string, std::string>& files) {
  std::map<std::string, PageLinks> pages;
  std::set<std::string> lowerNames;
  for (const auto& [file, bytes] : files) {
    std::string lower = file;
    for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    EXPECT_TRUE(lowerNames.insert(lower).second) << file;
    EXPECT_EQ(file.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-."),
              std::string::npos)
        << file;
    if (file.ends_with(".html")) pages[file] = ReadPage(file, bytes);
  }
  for (const auto& [file, page] : pages) {
    for (const std::string& target : page.targets) {
      const std::string to(text::TextBefore(target, "#"));
      const std::string& toFile = to.empty() ? file : to;
      ASSERT_TRUE(files.contains(toFile)) << target << " in " << file;
      if (target.find('#') == std::string::npos) continue;
      EXPECT_TRUE(pages[toFile].ids.contains(std::string(text::TextAfterLast(target, "#"))))
          << target << " in " << file;
    }
  }
}

/// Code between the page's number of a line and that of the next one.
std::string Line(const std::string& page, int line) {
  const std::string number = std::to_string(line);
  const std::string from = "<span id=\"z" + number + "\">" + number + "</span>";
  return page.substr(page.find(from) + from.size(), page.find('\n', page.find(from)) - page.find(from) - from.size());
}

TEST_F(SiteTest, NamesLeadToTheRoutinesThatTheyMean) {
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
  CheckSite(files);
  const std::string& one = files.at("modul-mdlEins.html");
  const std::string& two = files.at("modul-mdlZwei.html");
  const auto link = [](const std::string& to, const std::string& name) {
    return "<a href=\"" + to + "\">" + name + "</a>";
  };
  const std::string open = "modul-mdlZwei.html#c-Oeffne";
  EXPECT_EQ(Line(one, 1), "<b id=\"c-Eigene\"><span class=\"k\">Private</span> <span class=\"k\">Sub</span> " +
                              link("#r-Eigene", "Eigene") + "()</b>");
  EXPECT_EQ(Line(one, 2), link(open, "Öffne") + " " + link("modul-mdlZwei.html#c-Fremd2", "fremd2") +
                              "(1): " + link("#c-Eigene", "EIGENE"));
  EXPECT_EQ(Line(one, 3),
            "<span class=\"k\">Dim</span> Geheim, k <span class=\"k\">As</span> clsDrei: Geheim = <span class=\"s\">"
            "&quot;Eigene &amp;&quot;</span> <span class=\"c\">' Öffne</span> <b> 3</b>");
  EXPECT_EQ(Line(one, 4), "<b>mdlZwei." + link(open, "öFFNE") + " k." + link("modul-clsDrei.html#c-Breite", "Breite") +
                              ": k." + link("modul-clsDrei.html#c-Breite-2", "Breite") +
                              " = <span class=\"k\">Nothing</span></b>");
  EXPECT_EQ(Line(two, 4), "<b>\t  (<span class=\"k\">ByVal</span> Eigene)</b>");
  EXPECT_EQ(Line(two, 6), "\t\t" + link("#c-Fremd2", "Fremd2") + " = Eigene + " + link("#c-Fremd2", "Fremd2") + "(2)");
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
  CheckSite(files);
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
       "Aufgerufen von|keiner Routine (Einstufung: per Text: Name in einer Zeichenfolge, mdlA:5)|Möglicherweise von|"
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
    CheckSite(files);
    ASSERT_FALSE(HasFailure()) << seed;
    ASSERT_TRUE(files == Write()) << seed;
  }
}

}  // namespace
}  // namespace quillmate::output
