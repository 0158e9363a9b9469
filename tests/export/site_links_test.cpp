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
    } else if (name != "meta" && name != "link") {
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

TEST_F(SiteTest, IdentifiersLeadToDefinitions) {
  AddModule("mdlEins", codedb::kStandard,
            Marked("<[Private] [Sub] Eigene()>\n"
                   "Eigene: \326ffne 1, fremd2(Doppelt), EIGENE\n"
                   "Geheim ~\"Eigene &\"^ {' \326ffne} [Dim] \326ffne2 < 3\n"
                   "mdlZwei.\366FFNE: Breite = breite + Ohne_Zeile\n"
                   "<[End] [Sub]>\n"
                   "<Sp\344t>"));
  AddRoutine("Eigene", {1, 5}, codedb::kSub, codedb::kPrivate);
  AddRoutine("Sp\344t", {6, 6});
  AddModule("mdlZwei", codedb::kStandard,
            Marked("<[Sub] \326ffne(Eigene)>\n<[End] [Sub]>\n<[Sub] Eigene _\n  (Doppelt)>\n<[End] [Sub]>\n"
                   "<[Sub] Geheim()>\n<[End] [Sub]>"));
  AddRoutine("\326ffne", {1, 2});
  AddRoutine("Eigene", {3, 5, 2});
  AddRoutine("Geheim", {6, 7}, codedb::kSub, codedb::kPrivate);
  AddRoutine("Fremd2", {});
  AddModule("clsDrei", codedb::kClass, Marked("<[Get] Breite>\n<[Let] Breite>\n<[Sub] Doppelt>"));
  AddRoutine("Doppelt", {3, 3});
  AddRoutine("Breite", {1, 1}, codedb::kGet);
  AddRoutine("Breite", {2, 2}, codedb::kLet);
  AddRoutine("Ohne_Zeile", {99, 99});
  const auto files = Write();
  CheckSite(files);
  const std::string& one = files.at("modul-mdlEins.html");
  EXPECT_EQ(Line(one, 1),
            "<b id=\"c-Eigene\"><span class=\"k\">Private</span> <span class=\"k\">Sub</span> "
            "<a href=\"#r-Eigene\">Eigene</a>()</b>");
  EXPECT_EQ(Line(one, 2),
            "<a href=\"#c-Eigene\">Eigene</a>: <a href=\"modul-mdlZwei.html#c-Oeffne\">Öffne</a> 1, "
            "<a href=\"modul-mdlZwei.html#r-Fremd2\">fremd2</a>(<a href=\"modul-clsDrei.html#c-Doppelt\">Doppelt</a>), "
            "<a href=\"#c-Eigene\">EIGENE</a>");
  EXPECT_EQ(Line(one, 3),
            "Geheim <span class=\"s\">&quot;Eigene &amp;&quot;</span> <span class=\"c\">' Öffne</span> "
            "<span class=\"k\">Dim</span> Öffne2 <b> 3</b>");
  EXPECT_EQ(
      Line(one, 4),
      "<b>mdlZwei.<a href=\"modul-mdlZwei.html#c-Oeffne\">öFFNE</a>: <a href=\"modul-clsDrei.html#c-Breite\">Breite"
      "</a> = <a href=\"modul-clsDrei.html#c-Breite\">breite</a> + <a href=\"modul-clsDrei.html#r-Ohne_Zeile\">"
      "Ohne_Zeile</a></b>");
  EXPECT_EQ(Line(one, 6), "<b></b><b id=\"c-Spaet\"><a href=\"#r-Spaet\">Spät</a></b>");
  EXPECT_EQ(Line(files.at("modul-mdlZwei.html"), 4), "<b>  (<a href=\"modul-clsDrei.html#c-Doppelt\">Doppelt</a>)</b>");
}

TEST_F(SiteTest, CallersAndCalls) {
  AddModule("mdlA", codedb::kStandard,
            Marked("Start\n<Sub Start>\nWert = Wert + Start\nHilfe\nHilfe\n<End Sub>\n<Sub Hilfe>\nStart\n<End Sub>\n"
                   "<Sub Tot>\n<End Sub>"));
  AddRoutine("Start", {2, 6});
  AddRoutine("Hilfe", {7, 9}, codedb::kSub, codedb::kPrivate);
  AddRoutine("Tot", {10, 11});
  AddModule(
      "clsB", codedb::kClass,
      Marked("<Get Wert>\nWert = mWert\n<End>\n<Let Wert(x)>\nStart: Hilfe: Wert\n<End>\n<Sub Nutzt>\nWert\n<End>"));
  AddRoutine("Nutzt", {7, 9});
  AddRoutine("Wert", {1, 3}, codedb::kGet);
  AddRoutine("Wert", {4, 6}, codedb::kLet);
  project_.unused = {{3, SiteJudgement::kText}};
  const auto files = Write();
  CheckSite(files);
  const std::string& a = files.at("modul-mdlA.html");
  const std::string& b = files.at("modul-clsB.html");
  const auto pairs = [](const std::string& page, const std::string& routine) {
    return Part(Part(page, "id=\"r-" + routine + "\"", "</section>"), "<dt>", "</dl>");
  };
  EXPECT_EQ(pairs(a, "Start"),
            "<dt>Aufgerufen von</dt>\n<dd><a href=\"#quelltext\">mdlA (Deklarationen)</a>, "
            "<a href=\"#r-Hilfe\">Hilfe</a>, <a href=\"modul-clsB.html#r-Wert-2\">clsB.Wert (Let)</a></dd>\n"
            "<dt>Ruft auf</dt>\n<dd><a href=\"#r-Hilfe\">Hilfe</a>, <a href=\"modul-clsB.html#r-Wert\">clsB.Wert</a>"
            "</dd>\n");
  EXPECT_EQ(pairs(a, "Tot"),
            "<dt>Aufgerufen von</dt>\n<dd>keiner Routine (<a href=\"unbenutzt.html\">Einstufung: per Text</a>)"
            "</dd>\n");
  EXPECT_EQ(pairs(b, "Wert"),
            "<dt>Aufgerufen von</dt>\n<dd><a href=\"modul-mdlA.html#r-Start\">mdlA.Start</a>, "
            "<a href=\"#r-Nutzt\">Nutzt</a></dd>\n");
  EXPECT_EQ(pairs(b, "Wert-2"),
            "<dt>Aufgerufen von</dt>\n<dd>wie <a href=\"#r-Wert\">Wert (Get)</a></dd>\n"
            "<dt>Ruft auf</dt>\n<dd><a href=\"modul-mdlA.html#r-Start\">mdlA.Start</a></dd>\n");
}

/// Modules that no scanner makes: markers thrown together, routines with any lines, names of any kind.
TEST_F(SiteTest, EveryLinkLeadsSomewhere) {
  const std::string names[] = {"a",   "A", "\344", "ae",     "con",  "../x", "",  "\1<&>\"",
                               "a b", "n", "End",  "a\237b", "\200", "k",    "y", std::string(300, 'x')};
  for (unsigned seed = 0; seed < 150; ++seed) {
    std::mt19937 random(seed);
    project_.modules.clear();
    project_.unused.clear();
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
        if (below(3) == 0) project_.unused.push_back({{routineNumber_}, SiteJudgement::kHost});
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
