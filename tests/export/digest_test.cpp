#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <quillmate/export/digest.h>

namespace quillmate::output {
namespace {

symbols::ReferenceIndex Understand(std::initializer_list<std::pair<std::string_view, std::string_view>> modules) {
  symbols::Sources sources;
  sources.projects.emplace_back().name = "Lager";
  for (const auto& [name, text] : modules) {
    sources.modules.emplace_back().name = name;
    sources.modules.back().text = text;
  }
  return symbols::ReferenceIndex::Build(std::move(sources));
}

std::string DigestOf(const symbols::ReferenceIndex& index, std::size_t limit) {
  return ProjectDigest(index, checks::Measure(index), checks::RunChecks(index), {"A_B", limit});
}

constexpr std::string_view kStart =
    "Attribute VB_Name = \"mdlStart\"\n' Der *Anfang*\n' von allem\nOption Explicit\n\n' Bucht <alles>.\nPublic "
    "Function "
    "Buche(ByVal Nr As Long, Optional x$ = \"a,)\", ParamArray rest()) As Long()\nBuche = Nr: Hilf Nr\nEnd "
    "Function\nPrivate Sub Hilf( _\n  n): End\nEnd Sub\n";
constexpr std::string_view kRest = "Sub Ruft()\n' ```` \nmdlStart.Buche 1\nEnd Sub\n";

TEST(Digest, Parts) {
  const symbols::ReferenceIndex index = Understand({{"mdlStart", kStart}, {"Rest", kRest}});
  const std::string digest = DigestOf(index, 100'000);
  for (const std::string_view part :
       {"# A\\_B\n\n## Überblick\n\n- Projekte: 1\n- Module: 2\n- Routinen: 3\n",
        "| `mdlStart` | Modul | 11 | 7 | 2 | Der \\*Anfang von allem |\n",
        "### mdlStart\n\n- `Public Function Buche(ByVal Nr As Long, Optional x$ = \"a,)\", ParamArray rest()) As "
        "Long()`, "
        "Zeile 6, Komplexität 1\n  - Bucht \\<alles\\>.\n  - ruft `Hilf`\n  - aufgerufen von `Rest.Ruft`\n",
        "- `Private Sub Hilf(n)`, Zeile 9, Komplexität 1\n  - aufgerufen von `Buche`\n",
        "- **warnung** End bricht das ganze Programm ab (`end-anweisung`, 1-mal): ",
        "  - `mdlStart`, Zeile 10: „End“ bricht alles sofort ab",
        "## Code\n\n### mdlStart\n\n```vba\n' Der *Anfang*\n' von allem\nOption Explicit\n",
        "### Rest\n\n`````vba\nSub Ruft()\n' ```` \nmdlStart.Buche 1\nEnd Sub\n`````\n"}) {
    EXPECT_NE(digest.find(part), std::string::npos) << part << "\n" << digest;
  }
  EXPECT_EQ(digest.find("Nicht enthalten"), std::string::npos);
  EXPECT_EQ(digest.find("Attribute"), std::string::npos);
}

/// What Markdown would take for its own, in comments, names and texts; modules without code have none to show.
TEST(Digest, SignsOfMarkdown) {
  const symbols::ReferenceIndex index =
      Understand({{"M", "' A   `b`\t~~c~~ &lt; | # [d](e)\nSub S(Optional x = \"`a``b|\")\nEnd Sub\n"}, {"Leer", ""}});
  const std::string digest = DigestOf(index, 100'000);
  for (const std::string_view part :
       {"A \\`b\\` \\~\\~c\\~\\~ \\&lt; \\| \\# \\[d\\](e)", "- ``` Public Sub S(Optional x = \"`a``b|\") ```, Zeile 2",
        "| `Leer` | Modul | 0 |"}) {
    EXPECT_NE(digest.find(part), std::string::npos) << part << "\n" << digest;
  }
  EXPECT_EQ(digest.find("### Leer"), std::string::npos);
}

/// Whatever the limit leaves out is named or counted, and the limit holds as soon as it leaves room for the overview.
TEST(Digest, Limits) {
  std::string body = "Option Explicit\n";
  for (int i = 0; i < 200; ++i) {
    body += "Sub Routine" + std::to_string(i) + "()\n  Range(\"A1\").Value = " + std::to_string(i) + "\nEnd Sub\n";
  }
  const symbols::ReferenceIndex index = Understand({{"Klein", "Sub A()\nEnd Sub\n"}, {"Gross", body}, {"Auch", body}});
  std::size_t before = 0;
  for (const std::size_t limit : {2'000U, 5'000U, 15'000U, 35'000U, 60'000U}) {
    const std::string digest = DigestOf(index, limit);
    EXPECT_LE(digest.size(), limit);
    EXPECT_GT(digest.size(), before);
    before = digest.size();
    const bool whole = limit == 60'000U;
    EXPECT_EQ(digest.find("Nicht enthalten, weil die Größe begrenzt ist:\n\n- `") == std::string::npos, whole) << limit;
    EXPECT_EQ(digest.find("weil die Größe begrenzt ist.") == std::string::npos, whole) << limit;
  }
  EXPECT_NE(DigestOf(index, 15'000).find("### Klein\n\n```vba\nSub A()\n"), std::string::npos);
}

}  // namespace
}  // namespace quillmate::output
