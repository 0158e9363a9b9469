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

/// No matrix where nobody could read it.
TEST_F(SiteReportsTest, ManyModules) {
  for (int i = 0; i < 60; ++i) AddModule("M" + std::to_string(i), codedb::kStandard, "x\n");
  const std::string page = Write().at("abhaengigkeiten.html");
  EXPECT_EQ(page.find("<h2>Matrix"), std::string::npos);
  EXPECT_NE(page.find("<h2>Nach Modulen"), std::string::npos);
}

TEST_F(SiteReportsTest, SearchEntries) {
  const auto files = Write();
  const std::string& script = files.at("suche.js");
  EXPECT_NE(script.find("var entries = [\n[\"A\",\"Allgemeines Modul\",\"modul-A.html\",\"\"],\n"), std::string::npos);
  EXPECT_NE(script.find("[\"Zwei\",\"Sub in B\",\"modul-B.html#r-Zwei\",\"Ruft \\\"alles\\\"\"],\n"), std::string::npos)
      << script.substr(0, 2000);
  EXPECT_NE(files.at("suche.html").find("<label for=\"suchfeld\">"), std::string::npos);
}

}  // namespace
}  // namespace quillmate::output
