#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include <quillmate/files/file_bytes.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/project/exact_tree.h>
#include <quillmate/project/folding.h>
#include <quillmate/project/understanding.h>
#include <quillmate/text/windows1252.h>

#include "project/read_project.h"

namespace quillmate::project {
namespace {

constexpr const char* kLager =
    "Attribute VB_Name = \"Lager\"\r\nOption Explicit\r\n\r\n\r\nType Posten\r\n\tNr As Long\r\nEnd Type\r\n"
    "Dim \304rger As Long\r\nSub Laden(ByVal n As Long, _\r\n      m)\r\n\tIf n > 1 Then\r\n\r\n"
    "\t    For i = 1 To n\t'z\344hlt\r\n        \304rger = \304rger + i:\tm = \304rger\r\n      Next\r\n    End If\r\n"
    "End Sub\r\nFunction Zwei() As Long\r\nZwei = 2\r\nEnd Function\r\n";
constexpr const char* kSuche = "Attribute VB_Name = \"Suche\"\r\nSub Suchen()\r\n  Laden 1, 2: x = Zwei\r\nEnd Sub\r\n";

analysis::ScanOptions Layout(unsigned bits) {
  return {(bits & 1U) != 0, (bits & 2U) != 0, (bits & 4U) != 0, (bits & 8U) != 0};
}

std::string LineText(const navigation::CodeView& view, int line) {
  const std::size_t start = view.LineStart(static_cast<std::size_t>(line));
  return view.Text().substr(start, view.Text().find('\r', start) - start);
}

/// Whatever the display options made of the code: each name of a declaration is where it is said to be, and the place
/// leads back to it; folds begin and end with the lines that hang together.
TEST(Understanding, PlacesAreThoseOfTheViewInEveryLayout) {
  const ReadProject read(SourceFiles{{"a.bas", kLager}, {"b.bas", kSuche}});
  for (unsigned bits = 0; bits < 16; ++bits) {
    SCOPED_TRACE(bits);
    read.Read(Layout(bits));
    const auto known = read.Understood();
    ASSERT_NE(known, nullptr);
    navigation::CodeViews views;
    views.Load(read.Folder(), 2);
    const symbols::ReferenceIndex& index = known->Index();
    int names = 0, folds = 0;
    for (symbols::SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
      const TextStretch stretch = known->NameOf(symbol);
      if (stretch.length == 0) continue;
      const auto view = known->ViewOf(stretch.place.module);
      ASSERT_TRUE(view);
      const navigation::CodeView& code = views.View(*view);
      const auto shown = known->Shown(code, stretch);
      ASSERT_TRUE(shown) << index.Name(symbol);
      EXPECT_EQ(text::Utf8FromCode(code.Text().substr(shown->position, shown->length)), index.Name(symbol));
      for (const std::size_t offset : {shown->position, shown->position + shown->length}) {
        const auto found = known->NameAt(*view, code, offset);
        ASSERT_TRUE(found) << index.Name(symbol) << " at " << offset;
        EXPECT_EQ(found->targets, std::vector<symbols::SymbolId>{symbol});
      }
      ++names;
    }
    EXPECT_EQ(names, 9);
    for (const symbols::Index module : {0U, 1U}) {
      const navigation::CodeView& code = views.View(*known->ViewOf(module));
      for (const Fold& fold : FoldsOf(*known, module)) {
        std::string first = LineText(code, fold.first), last = LineText(code, fold.last);
        const auto trim = [](std::string& text) {
          text.erase(0, std::min(text.find_first_not_of(" \t"), text.size()));
        };
        trim(first);
        trim(last);
        const bool fits =
            (first.starts_with("If") && last == "End If") || (first.starts_with("For") && last == "Next") ||
            (first.starts_with("Type") && last == "End Type") || (first.starts_with("m)") && last == "End Sub") ||
            (first.starts_with("Sub Suchen") && last == "End Sub") ||
            (first.starts_with("Function") && last == "End Function");
        EXPECT_TRUE(fits) << first << " | " << last;
        ++folds;
      }
      for (const RoutineLines& routine : RoutinesOf(*known, module)) {
        EXPECT_NE(LineText(code, routine.first).find(routine.name), std::string::npos) << routine.name;
        EXPECT_TRUE(LineText(code, routine.headerLast).ends_with(routine.name == "Zwei" ? "Long" : ")"));
        EXPECT_TRUE(LineText(code, routine.last).find("End ") != std::string::npos) << routine.name;
      }
    }
    EXPECT_EQ(folds, 6);
    EXPECT_TRUE(known->Differences().empty());
  }
}

/// "Name@line" of each node, modules with ":" before their routines.
std::string Text(const ExactTree& tree) {
  std::string text;
  for (std::size_t i = 0; i < tree.tree.nodes.size(); ++i) {
    const navigation::TreeNode& node = tree.tree.nodes[i];
    text += node.parent < 0 ? node.text + ": " : node.text + "@" + std::to_string(tree.lines[i].value) + " ";
  }
  return text;
}

TEST(Understanding, TellsWhereTheIndexLacksRoutines) {
  struct Row {
    const char* code;
    const char* difference;
    const char* tree;
  };
  const Row kRows[] = {
      {"Sub A()\r\nEnd Sub\r\nSub B()\r\nEnd Sub\r\n", "", "M: A@1 B@3 "},
      // One body under two headers.
      {"#If VBA7 Then\r\nSub A()\r\n#Else\r\nSub A()\r\n#End If\r\nEnd Sub\r\n",
       "Gliederung abweichend: 1 Routine zu viel, 1 Routine mit anderem Umfang", "M: A@2 "},
      // A whole routine on one line.
      {"Sub A(): x = 1: End Sub\r\nSub B()\r\nEnd Sub\r\n",
       "Gliederung abweichend: 1 Routine nicht erkannt, 1 Routine zu viel, 1 Routine mit anderem Umfang",
       "M: A@1 B@2 "},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.code);
    const ReadProject read(SourceFiles{{"M.bas", std::string("Attribute VB_Name = \"M\"\r\n") + row.code}});
    const auto known = read.Understood();
    const std::string told = known->Differences().empty() ? "" : DifferenceText(known->Differences().front());
    navigation::ProjectTree modules;
    codedb::CodeDatabase database;
    database.OpenCodeDatabase(read.Folder());
    navigation::FillModuleNodes(database, modules);
    EXPECT_EQ(told, row.difference);
    EXPECT_EQ(Text(MakeExactTree(*known, modules)), row.tree);
  }
  const struct {
    OutlineDifference difference;
    const char* text;
  } kTexts[] = {{{}, ""},
                {{{1}, 1, 0, 0}, "Gliederung abweichend: 1 Routine nicht erkannt"},
                {{{1}, 0, 2, 1}, "Gliederung abweichend: 2 Routinen zu viel, 1 Routine mit anderem Umfang"}};
  for (const auto& c : kTexts) EXPECT_EQ(DifferenceText(c.difference), c.text);
}

TEST(Understanding, IsMadeWithoutTheFolderOnceThatIsRead) {
  const ReadProject read(SourceFiles{{"a.bas", kLager}});
  const UnderstandingRequest request{read.Folder(), navigation::TimeOfIndex(read.Folder())};
  UnderstandingProgress progress;
  progress.readingEnded = [&read] { std::filesystem::remove_all(read.Folder()); };
  const auto known = MakeUnderstanding(request, progress);
  ASSERT_NE(known, nullptr);
  EXPECT_EQ(known->Index().Modules().size(), 1U);
  EXPECT_THROW(MakeUnderstanding(request, progress), std::exception) << "the index is gone";
}

TEST(Understanding, IsNotMadeOfAnotherProjectOrWhenGivenUp) {
  const ReadProject read(SourceFiles{{"a.bas", kLager}});
  UnderstandingRequest request{read.Folder(), navigation::TimeOfIndex(read.Folder())};
  UnderstandingProgress progress;
  progress.cancelled = true;
  EXPECT_EQ(MakeUnderstanding(request, progress), nullptr);
  request.time -= std::chrono::hours(1);
  UnderstandingProgress another;
  EXPECT_EQ(MakeUnderstanding(request, another), nullptr);
}

}  // namespace
}  // namespace quillmate::project
