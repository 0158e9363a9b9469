#include <gtest/gtest.h>

#include <quillmate/analysis/scanner.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/text/lines.h>

#include "files/scratch.h"

namespace quillmate::symbols {
namespace {

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  text::LineReader reader(text);
  for (std::string_view line; reader.Next(line);) lines.push_back(line);
  return lines;
}

/// Every letter of the code is where the places say, in both directions, whatever the display options made of it.
TEST(ProjectSources, PlacesLeadToTheShownTextAndBack) {
  constexpr std::string_view kCode =
      "Option Explicit\r\n\r\n\r\nSub A()\r\n  If b\tThen\r\n\r\n      c = 1\t'd\te\r\n  End If\r\nEnd Sub\r\n"
      "Sub F()\r\n\tg = 2\r\nEnd Sub\r\n\r\nSub H()\r\nEnd Sub";
  for (unsigned bits = 0; bits < 16; ++bits) {
    SCOPED_TRACE(bits);
    const files::ScratchFolder folder;
    const analysis::ScanOptions options{(bits & 1U) != 0, (bits & 2U) != 0, (bits & 4U) != 0, (bits & 8U) != 0};
    codedb::WriteModuleText(folder.Path(), {1}, analysis::ScanForIndex(kCode, options, {}).markedText);
    const std::string stored = codedb::StoredCode(codedb::ReadModuleText(folder.Path(), {1}));
    codedb::Facts facts;
    facts.projects.resize(1);
    codedb::ModuleFacts& module = facts.modules.emplace_back();
    module.number = 1;
    module.hidden = {{1, "VERSION 1.0 CLASS\nEND"}, {5, "Attribute A.VB_UserMemId = 0"}};
    if (stored != kCode) {
      module.code = kCode;
      module.lines = codedb::MatchLines(kCode, stored);
    }
    codedb::WriteFacts(folder.Path(), facts);
    codedb::CodeDatabase none;
    const ProjectSources loaded = LoadSources(none, folder.Path());
    ASSERT_EQ(loaded.places.size(), 1U);
    const ModulePlaces& places = loaded.places[0];
    const auto text = LinesOf(loaded.sources.modules[0].text);
    const auto shown = LinesOf(stored);
    EXPECT_EQ(text.at(6), "Attribute A.VB_UserMemId = 0");
    EXPECT_EQ(places.EditorLine(7), 0U);
    int letters = 0;
    for (std::uint32_t line = 1; line <= text.size(); ++line) {
      const std::uint32_t to = places.ShownLine(line);
      EXPECT_TRUE(places.EditorLine(line) != 0 || to == 0);
      if (to == 0) continue;
      EXPECT_EQ(places.TextLineOfShown(to), line);
      for (std::uint32_t column = 1; column <= text[line - 1].size(); ++column) {
        const char letter = text[line - 1][column - 1];
        if (letter == ' ' || letter == '\t') continue;
        const std::uint32_t mapped = MapColumn(text[line - 1], shown.at(to - 1), column);
        EXPECT_EQ(shown[to - 1].at(mapped - 1), letter);
        EXPECT_EQ(MapColumn(shown[to - 1], text[line - 1], mapped), column);
        ++letters;
      }
    }
    EXPECT_EQ(letters, 71);
  }
}

TEST(ProjectSources, FactsBecomeSources) {
  codedb::Facts facts;
  facts.projects.resize(2);
  facts.projects[0].host = "access";
  facts.projects[0].references = {{"VBA", "4.2", "", -1}, {"B", "", "", 1}};
  facts.projects[0].constants = {{"X", 3}};
  facts.modules.resize(2);
  facts.modules[0].kind = "document";
  facts.modules[0].code = "Dim a";
  facts.modules[1].project = 1;
  facts.modules[1].hidden = {{1, "VERSION 5.00\nBegin VB.Form F\nEnd"}};
  facts.bindings = {{0, "", "A", "Ort", "taste"}};
  const Sources sources = SourcesFrom(facts);
  EXPECT_EQ(sources.projects[0].host, Host::kAccess);
  EXPECT_EQ(sources.projects[0].references, std::vector<Index>{1});
  EXPECT_EQ(sources.projects[0].constants.at(0).value, 3);
  EXPECT_EQ(sources.projects[1].dialect, language::Dialect::kVb6);
  EXPECT_EQ(sources.modules[0].kind, language::ModuleKind::kDocument);
  EXPECT_EQ(sources.modules[1].text, "VERSION 5.00\nBegin VB.Form F\nEnd\n");
  EXPECT_EQ(sources.bindings.at(0).kind, BindingKind::kShortcut);
}

}  // namespace
}  // namespace quillmate::symbols
