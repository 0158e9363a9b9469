#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/symbols/code_spans.h>
#include <quillmate/symbols/compare_rows.h>

#include "symbols/changed_project.h"
#include "symbols/written_project.h"

namespace quillmate::symbols {
namespace {

using Kind = CompareRow::Kind;

ComparedState StateOf(Sources sources) {
  ComparedState state;
  state.index = ReferenceIndex::Build(std::move(sources), {.threads = 1});
  return state;
}

/// Every line that the editor shows is in exactly one row of its side, with its own text, and is found there.
TEST(CompareRows, EveryLineStandsInOneRow) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    const testing::ChangedProject pair = testing::ChangeProject(seed);
    const ComparedState olds = StateOf(pair.oldSources), news = StateOf(pair.newSources);
    const Comparison comparison = Compare(olds, news);
    const ComparedStates states{comparison, olds.index, news.index};
    const ChangePlaces places(states);
    std::map<std::pair<Index, std::uint32_t>, int> seen[2];
    for (Index number = 0; number < comparison.modules.size(); ++number) {
      const CompareRows rows(states, comparison.modules[number], true);
      std::size_t inChanges = 0;
      for (const ChangeStretch& change : rows.Changes()) inChanges += change.count;
      for (std::size_t at = 0; at < rows.Rows().size(); ++at) {
        const CompareRow& row = rows.Rows()[at];
        ASSERT_NE(row.kind, Kind::kSkipped);
        if (row.kind == Kind::kChanged || row.kind == Kind::kNew || row.kind == Kind::kGone) --inChanges;
        for (const Side side : {Side::kOld, Side::kNew}) {
          const std::uint32_t line = side == Side::kOld ? row.oldNumber : row.newNumber;
          if (line == 0) continue;
          const ReferenceIndex& index = side == Side::kOld ? olds.index : news.index;
          const Index module = rows.ModuleAt(at, side);
          const language::Module& code = index.Code(module);
          ASSERT_EQ(code.LineText(code.LineOfEditorLine(line)), side == Side::kOld ? row.oldText : row.newText);
          ASSERT_EQ(rows.RowAt({side, module, line}), at);
          ++seen[static_cast<int>(side)][{module, line}];
          if (code.RoutineAt(code.LineOfEditorLine(line)) != kNone) {
            ASSERT_EQ(places.ChangeAt({side, module, line}), number);
          }
        }
      }
      EXPECT_EQ(inChanges, 0U);
      // Shortened, the same changes are left.
      EXPECT_EQ(CompareRows(states, comparison.modules[number], false).Changes().size(), rows.Changes().size());
    }
    for (const Side side : {Side::kOld, Side::kNew}) {
      const ReferenceIndex& index = side == Side::kOld ? olds.index : news.index;
      std::size_t lines = 0;
      for (Index module = 0; module < index.Modules().size(); ++module) {
        for (std::uint32_t line = 1; line <= index.Code(module).lines.size(); ++line) {
          if (index.EditorLine(module, line) != 0) ++lines;
        }
      }
      EXPECT_EQ(seen[static_cast<int>(side)].size(), lines) << seed;
      for (const auto& [place, times] : seen[static_cast<int>(side)]) EXPECT_EQ(times, 1);
    }
  }
}

TEST(CompareRows, LongStretchesAreSkipped) {
  std::string body;
  for (int i = 0; i < 20; ++i) body += "  Zeile " + std::to_string(i) + "\n";
  const testing::WrittenProject before("== module M\nSub A()\n  x = 1\n" + body + "  y = 1\nEnd Sub\n"),
      after("== module M\nSub A()\n  x = 2\n" + body + "  y = 2\nEnd Sub\n");
  const ComparedState olds = StateOf(before.sources), news = StateOf(after.sources);
  const Comparison comparison = Compare(olds, news);
  const CompareRows rows({comparison, olds.index, news.index}, comparison.modules.front(), false);
  std::string told;
  for (const CompareRow& row : rows.Rows()) {
    told += row.kind == Kind::kHeading ? '#' : row.kind == Kind::kSame ? '.' : row.kind == Kind::kChanged ? '~' : '_';
    if (row.kind == Kind::kSkipped) told += std::to_string(row.skipped);
  }
  EXPECT_EQ(told, "#.~..._14...~.");
}

TEST(CodeSpans, KeywordsStringsAndComments) {
  const testing::WrittenProject written(
      "== module M\nProperty Get X()\n  o.End = \"a\" ' b\n#If x Then\n  [End] = Property\n#End If\nEnd Property\n");
  const ComparedState state = StateOf(written.sources);
  std::string told;
  for (const CodeSpan& span : SpansOf(state.index, 0)) {
    told += std::string(state.index.Code(0).text.substr(span.offset, span.length)) + "|";
  }
  EXPECT_EQ(told, "Property|Get|\"a\"|' b|#|If|Then|#|End|If|End|Property|");
}

}  // namespace
}  // namespace quillmate::symbols
