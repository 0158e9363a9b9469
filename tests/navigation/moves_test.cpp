#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/history.h>
#include <quillmate/navigation/routine_lines.h>
#include <quillmate/navigation/zoom.h>

#include "project_fixture.h"

namespace quillmate::navigation {
namespace {

TEST(IdentifierAtCaret, WordBeforeTheCaret) {
  const struct {
    std::string_view text;
    std::size_t caret;
    std::string_view identifier;
  } cases[] = {
      {"Call Foo(1)\r\n", 8, "Foo"},    // after the word
      {"Call Foo(1)\r\n", 6, "Foo"},    // in it
      {"Call Foo(1)\r\n", 5, ""},       // just in front of it
      {"Call Foo(1)\r\n", 13, ""},      // at the end
      {"Mod1.Foo = 1\r\n", 4, "Mod1"},  // on either side of the point
      {"Mod1.Foo = 1\r\n", 8, "Foo"},
      {"\304rger_\337\3747$ \r\n", 3, "\304rger_\337\3747"},
      {"a\351b\r\n", 3, "b"},  // accented letters are no identifier characters
      {"x\r\nFoo", 4, "Fo"},   // the last character of the text is lost
      {"Foo", 3, ""},
      {"", 0, ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(IdentifierAtCaret(c.text, c.caret), c.identifier) << c.text << " at " << c.caret;
}

std::string Describe(const std::optional<Definition>& found) {
  if (!found) return "none";
  return std::to_string(found->moduleNumber.value) + " " + found->moduleName + " " +
         std::to_string(found->startLine.value) + (found->sameModule ? " own" : "");
}

TEST_F(Project, DefinitionInTheOwnModuleFirst) {
  for (int module = 1; module <= 5; ++module) AddModule(module, "Mod" + std::to_string(module), "2");
  Add(1, 2, "Foo", 10, 12, "1", "2");
  Add(2, 5, "foo", 20, 22, "1", "1");
  Add(3, 4, "FOO", 30, 32, "2", "3");
  Add(4, 2, "Nur", 40, 42, "1", "2");
  Add(5, 3, "\334ben", 50, 52, "5", "3");
  Add(6, 3, "\334ben", 40, 45, "4", "1");
  AddRoutine(7, 1, "Offen");
  Add(8, 1, "a'b", 7, 8);
  const struct {
    int view;
    std::string_view name;
    const char* found;
  } cases[] = {
      {1, "Foo", "2  10 own"},                                // private, in its own module
      {2, "Foo", "5 Mod5 20"},                                // the first of two that are not
      {0, "\374BEN", "3 Mod3 50"},                            // Friend, in another spelling
      {2, "\334ben", "3  50 own"}, {0, "Offen", "1  0 own"},  // its line was never seen
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Describe(FindDefinition(database, {c.view}, c.name)), c.found) << c.view << ' ' << c.name;
  }
}

/// Runs a script on a history: a digit visits that place, "<" and ">" step, "=" puts another place where the current
/// one is. Answers what each step showed and then position, last, and which panels are enabled.
std::string Visit(RoutineHistory& history, std::string_view script) {
  std::string shown;
  for (const char step : script) {
    if (step == '=') {
      history.ReplaceCurrent({7, 77, "N", "x"});
    } else if (step == '<' || step == '>') {
      const Place* const place = step == '<' ? history.Back() : history.Next();
      if (place == nullptr) {
        shown += "- ";
      } else {
        shown += std::to_string(place->view.value) + "|" + std::to_string(place->caret) + place->module +
                 place->routine + " ";
      }
    } else {
      history.Push({step - '0', 5, "M", std::string(1, step)});
    }
  }
  return shown + "@" + std::to_string(history.Position()) + "/" + std::to_string(history.Last()) +
         (history.BackEnabled() ? "<" : "") + (history.NextEnabled() ? ">" : "");
}

TEST(RoutineHistory, BackAndNext) {
  const struct {
    std::string_view script, shown;
  } cases[] = {
      {"", "@0/0"},
      {"=", "@1/1"},
      {"=2<", "7|77Nx @1/2>"},
      {"<", "- @0/0"},
      {"1", "@1/1"},
      {"1<", "- @1/1"},
      {"12", "@2/2<"},
      {"12<", "1|5M1 @1/2>"},
      {"12<>", "1|5M1 2|5M2 @2/2<"},
      {"123<<", "2|5M2 1|5M1 @1/3>"},
      {"123<=<>", "2|5M2 1|5M1 7|77Nx @2/3<>"},
      // A visit after two steps back cuts the later places off.
      // The list's bounds are all that holds a step back; what was cut off is still there for it.
      {"1234<<5>", "3|5M3 2|5M2 4|5M4 @4/3<"},
      {"1>", "- @2/1"},
      {"1><", "- 1|5M1 @1/1"},
      {"1>>2<", "- - - @3/4<"},
      {"1>=<>", "- 1|5M1 7|77Nx @2/1<"},
      {">", "- @1/0"},
  };
  for (const auto& c : cases) {
    RoutineHistory history;
    EXPECT_EQ(Visit(history, c.script), c.shown) << c.script;
  }
}

TEST(RoutineHistory, ForgetsTheOldestOfThirtyOne) {
  RoutineHistory history;
  for (int i = 1; i <= 31; ++i) history.Push({i, 0, "", ""});
  EXPECT_EQ(history.Position(), RoutineHistory::kPlaces);
  EXPECT_EQ(history.Next(), nullptr);
  EXPECT_EQ(history.Position(), RoutineHistory::kPlaces);
  for (int i = 30; i >= 2; --i) EXPECT_EQ(history.Back()->view.value, i);
  EXPECT_FALSE(history.BackEnabled());
  EXPECT_EQ(history.Back(), nullptr);
  for (int i = 3; i <= 31; ++i) EXPECT_EQ(history.Next()->view.value, i);
  EXPECT_FALSE(history.NextEnabled());
}

TEST_F(Project, RoutinePanelFollowsTheCaret) {
  Add(1, 1, "A", 3, 4);
  Add(2, 1, "B", 4, 4);
  Add(3, 2, "C", 1, 9);
  CodeView view("Option\r\n\r\nSub A\r\nEnd Sub\r\n");
  CaretTracker tracker;
  const std::optional<std::string> unchanged;
  const auto trackAt = [&](std::size_t caret, int index) {
    view.Select(caret, 0);
    return tracker.Track(database, view, {index});
  };
  EXPECT_EQ(trackAt(0, 0), "");  // the first line ever reported
  EXPECT_EQ(trackAt(5, 0), unchanged);
  EXPECT_EQ(trackAt(10, 0), "A");
  EXPECT_EQ(trackAt(17, 0), "A");
  EXPECT_EQ(trackAt(18, 0), unchanged);
  EXPECT_EQ(trackAt(18, 1), unchanged);  // the same line of another view
  EXPECT_EQ(tracker.Refresh(database, view, {1}), "C");
  EXPECT_EQ(trackAt(26, 0), "");
  EXPECT_EQ(tracker.Track(database, CodeView(), {0}), unchanged);
  database.CloseCodeDatabase();
  EXPECT_EQ(trackAt(26, 0), unchanged);  // no query for the same line
  EXPECT_THROW(trackAt(0, 0), files::Failure);
}

TEST_F(Project, ZoomShowsTheRoutineOrTheDeclarations) {
  Add(1, 1, "A", 4, 5);
  Add(2, 1, "B", 6, 99);
  Add(3, 2, "A", 1, 2);
  Add(4, 4, "A", 0, 2);
  Add(5, 5, "A", 5, 3);
  const PlainModule module = StripMarkers(
      "|\237f|Option|n\237|\r\n"
      "|\237k|'x|n\237|\r\n"
      "\r\n"
      "|\237x||\237f|Sub|n\237| A|y\237|\r\n"
      "|\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n"
      "Rest\r\n");
  const struct {
    int index;
    std::int32_t line;
    const char *text, *runs;
    std::size_t start;
  } cases[] = {
      {0, 4, "Sub A\r\nEnd Sub", "0+3k! 3+2p! 7+3k! 10+1p! 11+3k! ", 14},
      {0, 2, "Option\r\n'x\r\n", "0+6k 8+2c ", 0},  // the empty line before the routine has no characters
      {0, 7, "Rest\r\n", "", 30},                   // to the end of the text
      {1, 2, "Option\r\n'x", "0+6k 8+2c ", 0},
      {1, 5, "Option", "0+6k ", 0},  // no line comes before the routine: its first one
      {2, 3, "Option\r\n'x\r\n\r\nSub A\r\nEnd Sub\r\nRest\r\n", "0+6k 8+2c 14+3k! 17+2p! 21+3k! 24+1p! 25+3k! ", 0},
      {4, 5, "Option\r\n'x\r\n\r\nSub A", "0+6k 8+2c 14+3k! 17+2p! ", 0},  // lines the wrong way round enclose none
  };
  for (const auto& c : cases) {
    CodeView view(module.text);
    const auto zoom = BuildZoomView(database, view, module.runs, {c.index}, {c.line});
    ASSERT_TRUE(zoom);
    EXPECT_EQ(zoom->text, c.text) << c.index << ' ' << c.line;
    std::string runs;
    for (const StyleRun& run : zoom->runs) {
      runs += std::to_string(run.start) + "+" + std::to_string(run.length) + "pkcs"[static_cast<int>(run.span)] +
              (run.headerLine ? "! " : " ");
    }
    EXPECT_EQ(runs, c.runs) << c.index << ' ' << c.line;
    EXPECT_EQ(view.SelStart(), c.start);
    EXPECT_EQ(view.SelLength(), 1U);
  }
  CodeView view(module.text);
  view.Select(3, 2);
  EXPECT_FALSE(BuildZoomView(database, view, module.runs, {3}, {1}));
  EXPECT_EQ(view.SelText(), "io");
}

}  // namespace
}  // namespace quillmate::navigation
