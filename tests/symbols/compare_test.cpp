#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/symbols/compare.h>

#include "symbols/changed_project.h"
#include "symbols/written_project.h"

namespace quillmate::symbols {
namespace {

using testing::ChangedProject;
using testing::ChangeProject;
using testing::WrittenProject;

ComparedState StateOf(Sources sources) {
  ComparedState state;
  state.index = ReferenceIndex::Build(std::move(sources), {.threads = 1});
  return state;
}

std::string TrivialWords(std::uint8_t bits) {
  std::string words;
  if ((bits & trivial::kLayout) != 0) words += " layout";
  if ((bits & trivial::kComment) != 0) words += " comment";
  if ((bits & trivial::kCase) != 0) words += " case";
  return words;
}

std::string FullName(const ReferenceIndex& index, const RoutinePlace& place) {
  return index.Modules()[place.module].name + "." + std::string(RoutineName(index, place));
}

/// A comparison in the words of its truth.
struct Told {
  std::map<std::string, std::string> routines, declarations, modules;
};

Told Tell(const ComparedState& olds, const ComparedState& news, const Comparison& comparison) {
  Told told;
  for (const ModuleChange& module : comparison.modules) {
    const bool isNew = module.newModule != kNone;
    const std::string name = (isNew ? news : olds).index.Modules()[isNew ? module.newModule : module.oldModule].name;
    if (module.state == ChangeState::kRenamed) {
      told.modules[name] = "renamed " + olds.index.Modules()[module.oldModule].name;
    } else if (module.state == ChangeState::kNew || module.state == ChangeState::kGone) {
      told.modules[name] = Word(module.state);
    }
    for (const RoutineChange& routine : module.routines) {
      const bool here = routine.newPlace.IsKnown();
      std::string text(Word(routine.state));
      if (routine.state == ChangeState::kMoved || routine.state == ChangeState::kRenamed) {
        text += " " + FullName(olds.index, routine.oldPlace);
        if (routine.text.changed) text += " changed";
      }
      text += TrivialWords(routine.text.trivial);
      told.routines[FullName(here ? news.index : olds.index, here ? routine.newPlace : routine.oldPlace)] = text;
    }
    for (const DeclarationChange& declaration : module.declarations) {
      const bool here = declaration.newSymbol != kNone;
      const ReferenceIndex& index = here ? news.index : olds.index;
      const SymbolId id = here ? declaration.newSymbol : declaration.oldSymbol;
      std::string text(Word(declaration.state));
      if (declaration.state == ChangeState::kMoved) {
        text += " " + olds.index.Modules()[olds.index.SymbolAt(declaration.oldSymbol).module].name + ".";
      }
      told.declarations[name + "." + std::string(index.Name(id))] = text;
    }
  }
  return told;
}

/// The new lines made from the old ones by the edits alone.
std::vector<std::string_view> Applied(const std::vector<std::string_view>& olds,
                                      const std::vector<std::string_view>& news, const std::vector<Edit>& edits) {
  std::vector<std::string_view> made;
  std::uint32_t at = 0;
  for (const Edit& edit : edits) {
    while (at < edit.oldFirst) made.push_back(olds[at++]);
    if (made.size() != edit.newFirst) return {};
    for (std::uint32_t n = 0; n < edit.newCount; ++n) made.push_back(news[edit.newFirst + n]);
    at += edit.oldCount;
  }
  while (at < olds.size()) made.push_back(olds[at++]);
  return made;
}

void ExpectEditsApply(const ComparedState& olds, const ComparedState& news, const Comparison& comparison) {
  for (const ModuleChange& module : comparison.modules) {
    if (module.oldModule == kNone || module.newModule == kNone) continue;
    const auto& oldCode = olds.index.Code(module.oldModule);
    const auto& newCode = news.index.Code(module.newModule);
    const auto oldOutside = TextsOf(oldCode, OutsideLines(oldCode)),
               newOutside = TextsOf(newCode, OutsideLines(newCode));
    ASSERT_EQ(Applied(oldOutside, newOutside, module.outside.edits), newOutside);
    for (const RoutineChange& routine : module.routines) {
      if (!routine.oldPlace.IsKnown() || !routine.newPlace.IsKnown()) continue;
      const auto& from = olds.index.Code(routine.oldPlace.module);
      const auto oldLines = TextsOf(from, RoutineLines(from, routine.oldPlace.routine));
      const auto newLines = TextsOf(newCode, RoutineLines(newCode, routine.newPlace.routine));
      ASSERT_EQ(Applied(oldLines, newLines, routine.text.edits), newLines);
    }
  }
}

/// The states as seen from the other side.
std::map<std::string, int> StateCounts(const Comparison& comparison, bool mirrored) {
  std::map<std::string, int> counts;
  for (const ModuleChange& module : comparison.modules) {
    for (const RoutineChange& routine : module.routines) {
      std::string word(Word(routine.state));
      if (mirrored && (word == "new" || word == "gone")) word = word == "new" ? "gone" : "new";
      ++counts[word];
    }
  }
  return counts;
}

TEST(Compare, GeneratedPairsAreToldAsTheyWereMade) {
  for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const ChangedProject project = ChangeProject(seed);
    const ComparedState olds = StateOf(project.oldSources), news = StateOf(project.newSources);
    const Comparison comparison = Compare(olds, news);
    const Told told = Tell(olds, news, comparison);
    ASSERT_EQ(told.routines, project.routines);
    ASSERT_EQ(told.declarations, project.declarations);
    ASSERT_EQ(told.modules, project.modules);
    ASSERT_NO_FATAL_FAILURE(ExpectEditsApply(olds, news, comparison));
    ASSERT_EQ(StateCounts(Compare(news, olds), true), StateCounts(comparison, false));
    ASSERT_TRUE(Compare(news, news).equal);
    const Comparison strict = Compare(olds, news, {.ignore = trivial::kLayout | trivial::kComment | trivial::kCase});
    ASSERT_EQ(StateCounts(strict, false)["layout"], 0);
  }
}

/// What a pair of one module each is told as: its state, then the routines that are not the same.
std::string TellText(const std::string& oldText, const std::string& newText, std::uint8_t ignore = 0) {
  const WrittenProject olds("== module M\n" + oldText), news("== module M\n" + newText);
  const ComparedState oldState = StateOf(olds.sources), newState = StateOf(news.sources);
  const Comparison comparison = Compare(oldState, newState, {.ignore = ignore});
  std::string text(Word(comparison.modules.front().state));
  text += TrivialWords(comparison.modules.front().trivial);
  for (const auto& [name, state] : Tell(oldState, newState, comparison).routines) {
    if (state != "same") text += "; " + name.substr(2) + " " + state;
  }
  return text;
}

TEST(Compare, WhatCountsAsTheSame) {
  const std::string code = "Sub A()\n  x = 1 + 2\n  Call B(\"a  b\")\nEnd Sub\n";
  const std::string two = "Sub A()\n  x = 1\nEnd Sub\n\nSub B()\n  y = 2\nEnd Sub\n";
  const struct {
    std::string oldText, newText, told;
    std::uint8_t ignore = 0;
  } cases[] = {
      {code, code, "same"},
      {code, "Sub A()\nx=1+2\n  Call B (\"a  b\")\nEnd Sub\n", "layout layout; A layout layout"},
      {code, "Sub A()\n  x = 1 + _\n    2\n  Call B(\"a  b\")\nEnd Sub\n", "layout layout; A layout layout"},
      {code, "Sub A()\n  x = 1 + 2\n  Call B(\"a b\")\nEnd Sub\n", "changed; A changed"},
      {code, "Sub A()\n  x = 1 + 2\n  Call B(\"A  b\")\nEnd Sub\n", "changed; A changed"},
      {code, "Sub a()\n  X = 1 + 2\n  call b(\"a  b\")\nend sub\n", "layout case; a layout case"},
      {code, "Sub A()\n  x = 1 + 2 ' x\n  Rem y\n  Call B(\"a  b\")\nEnd Sub\n", "layout comment; A layout comment"},
      {code, "Sub A()\n  x = 1 + 2 ' x _\n  x = 3\n  Call B(\"a  b\")\nEnd Sub\n", "layout comment; A layout comment"},
      {code, "Sub A()\n\n  X = 1 + 2 ' x\n  Call B(\"a  b\")\nEnd Sub\n",
       "layout layout comment case; A layout layout comment case"},
      {code, "Sub A()\n\n  X = 1 + 2 ' x\n  Call B(\"a  b\")\nEnd Sub\n",
       "layout layout comment case; A layout layout comment case", trivial::kLayout},
      {code, "Sub A()\n\n  X = 1 + 2 ' x\n  Call B(\"a  b\")\nEnd Sub\n", "same", 7},
      {"Sub A()\n  With o\n    f .x\n  End With\nEnd Sub\n", "Sub A()\n  With o\n    f.x\n  End With\nEnd Sub\n",
       "changed; A changed"},
      {"Sub A()\nEnd Sub\n", "Function A()\nEnd Function\n", "changed; A changed"},
      {two, "Sub B()\n  y = 2\nEnd Sub\n\nSub A()\n  x = 1\nEnd Sub\n",
       "layout layout; A layout layout; B layout layout"},
      {two, "\n\nSub B()\n  y = 2\nEnd Sub\n\nSub A()\n  x = 1\nEnd Sub\n", "same", trivial::kLayout},
      {"Option Explicit\n' eins\n", "Option Explicit\n' zwei\n", "layout comment"},
      {"Option Explicit\n' eins\n", "Option Explicit\n' zwei\n", "same", trivial::kComment},
      {"Sub Groesse()\n  Ärger = 1\nEnd Sub\n", "Sub Groesse()\n  ärger = 1\nEnd Sub\n",
       "layout case; Groesse layout case"},
      {"Property Get P()\nP = 1\nEnd Property\n", "Property Let P(v)\nP = 1\nEnd Property\n", "changed; P changed"},
      // The same body makes a new name of it, half of it does not; an empty one never does.
      {"Sub A()\n  Tue 1\nEnd Sub\n", "Sub B()\n  Tue 1\nEnd Sub\n", "changed; B renamed M.A changed"},
      {"Sub A()\nEnd Sub\n", "Sub B()\nEnd Sub\n", "changed; A gone; B new"},
      {"Sub A()\n  Eins 1\n  Zwei 2\n  Drei 3\n  Vier 4\nEnd Sub\n",
       "Sub B()\n  Eins 1\n  Zwei 2\n  Drei 3\n  Fünf 5\nEnd Sub\n", "changed; B renamed M.A changed"},
      {"Sub A()\n  Eins 1\n  Zwei 2\n  Drei 3\n  Vier 4\nEnd Sub\n",
       "Sub B()\n  Eins 1\n  Zwei 2\n  Acht 3\n  Fünf 5\nEnd Sub\n", "changed; A gone; B new"},
      {"Function A()\n  A = Tue(7)\nEnd Function\n", "Function B()\n  B = Tue(7)\nEnd Function\n",
       "changed; B renamed M.A changed"},
      {"Sub A(): x = 1: End Sub\nSub B(): y = 1: End Sub\n", "Sub A(): x = 1: End Sub\nSub B(): y = 2: End Sub\n",
       "changed; B changed"},
      {"Sub A()\n  If x Then\n", "Sub A()\n  If x Then\nSub B()\nEnd Sub\n", "changed; B new"},
  };
  for (const auto& c : cases) EXPECT_EQ(TellText(c.oldText, c.newText, c.ignore), c.told) << c.oldText << c.newText;
}

/// A side that is not whole makes nothing gone.
TEST(Compare, GapsAreNoChanges) {
  const WrittenProject whole("== module A\nSub X()\nEnd Sub\n== module B\nSub Y()\nEnd Sub\n"),
      part("== module A\nSub X()\nEnd Sub\n");
  const ComparedState olds = StateOf(whole.sources);
  ComparedState news = StateOf(part.sources);
  news.partial = {true};
  EXPECT_TRUE(Compare(olds, news).equal);
  EXPECT_EQ(Compare(olds, news).notCompared.oldModules, std::vector<Index>{1});
  EXPECT_EQ(Compare(news, olds).notCompared.newModules, std::vector<Index>{1});
  news.partial = {false};
  EXPECT_EQ(Compare(olds, news).modules.back().state, ChangeState::kGone);
}

TEST(Compare, WhatAChangeMakesUnused) {
  const WrittenProject olds(
      "== module M\nPublic Const Alt = 1\nSub Start()\n  Eins Alt\nEnd Sub\nPrivate Sub Eins(x)\n  y = x\nEnd Sub\n"
      "Private Sub Zwei()\nEnd Sub\nPrivate Sub Tot()\nEnd Sub\n");
  const WrittenProject news(
      "== module M\nPublic Const Alt = 1\nSub Start()\n  Zwei\nEnd Sub\nPrivate Sub Eins(x)\n  y = x\nEnd Sub\n"
      "Private Sub Zwei()\nEnd Sub\n");
  const ComparedState oldState = StateOf(olds.sources), newState = StateOf(news.sources);
  std::string told;
  for (const UnusedChange& unused : Compare(oldState, newState).unused) {
    const bool here = unused.newSymbol != kNone;
    told += (unused.made ? "+" : "-");
    told += (here ? newState : oldState).index.Name(here ? unused.newSymbol : unused.oldSymbol);
  }
  EXPECT_EQ(told, "+Alt+Eins-Zwei-Tot");
}

codedb::Facts FactsOf(const std::string& version, const std::string& type, std::int32_t left) {
  codedb::Facts facts;
  codedb::ProjectFacts& project = facts.projects.emplace_back();
  project.host = "excel";
  project.references = {{"Office", version, "", -1}};
  project.document = {{"Autor", "Ich"}, {"Zuletzt gespeichert von", version}};
  codedb::ModuleFacts& module = facts.modules.emplace_back();
  module.controlsKnown = true;
  codedb::ControlFact& control = module.controls.emplace_back();
  control.name = "cmd";
  control.type = type;
  control.left = left;
  module.attributes = {{0, "", "VB_Name", "\"M\""}, {0, "X", "VB_UserMemId", "0"}};
  facts.bindings = {{0, "", "M.X", "Schaltfläche 1", "schaltfläche"}, {0, "", "M.X", "Schaltfläche 1", "schaltfläche"}};
  return facts;
}

TEST(Compare, FactsBesideTheCode) {
  const auto tell = [](codedb::Facts oldFacts, codedb::Facts newFacts) {
    const WrittenProject project("== module M\nSub X()\nEnd Sub\n");
    ComparedState olds = StateOf(project.sources), news = StateOf(project.sources);
    olds.facts = std::move(oldFacts);
    news.facts = std::move(newFacts);
    olds.hasFacts = news.hasFacts = true;
    const Comparison comparison = Compare(olds, news);
    std::string text = comparison.equal ? "equal" : "different";
    const auto add = [&](const FactChange& fact) {
      text.append("; ").append(Word(fact.kind)).append(" ").append(Word(fact.state)).append(" ").append(fact.name);
      text.append(" ").append(fact.oldValue).append(">").append(fact.newValue);
    };
    for (const FactChange& fact : comparison.projects.front().facts) add(fact);
    for (const FactChange& fact : comparison.modules.front().facts) add(fact);
    return text;
  };
  const codedb::Facts facts = FactsOf("2.8", "TextBox", 1);
  codedb::Facts fewer = facts;
  fewer.bindings.pop_back();
  fewer.modules.front().attributes.pop_back();
  EXPECT_EQ(tell(facts, facts), "equal");
  EXPECT_EQ(tell(facts, FactsOf("2.9", "TextBox", 2)),
            "different; reference changed Office 2.8>2.9; document changed Zuletzt gespeichert von 2.8>2.9; "
            "control layout cmd TextBox (Lage 1/?)>TextBox (Lage 2/?)");
  EXPECT_EQ(tell(facts, FactsOf("2.8", "Label", 1)),
            "different; control changed cmd TextBox (Lage 1/?)>Label (Lage 1/?)");
  EXPECT_EQ(tell(facts, fewer), "different; binding gone Schaltfläche 1 M.X>; attribute gone X.VB_UserMemId 0>");
}

/// The length of the shortest script, by the table of all prefixes.
std::size_t ShortestScript(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
  std::vector<std::vector<std::size_t>> common(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = a.size(); i-- > 0;) {
    for (std::size_t j = b.size(); j-- > 0;) {
      common[i][j] = a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  return a.size() + b.size() - 2 * common[0][0];
}

TEST(LineDifference, ScriptsAreRightAndShortest) {
  std::mt19937 source(5);
  const auto random = [&] { return static_cast<std::uint32_t>(source()); };
  for (int round = 0; round < 4000; ++round) {
    const std::uint32_t kinds = 1 + random() % 6;
    const auto sequence = [&] {
      std::vector<std::uint32_t> ids(random() % 40);
      for (std::uint32_t& id : ids) id = random() % kinds;
      return ids;
    };
    const std::vector<std::uint32_t> olds = sequence(), news = sequence();
    const std::vector<Edit> edits = Differences(olds, news);
    std::vector<std::uint32_t> made;
    std::size_t length = 0;
    std::uint32_t at = 0;
    for (const Edit& edit : edits) {
      ASSERT_TRUE(made.empty() || edit.oldFirst > at || at == 0);
      made.insert(made.end(), olds.begin() + at, olds.begin() + edit.oldFirst);
      ASSERT_EQ(made.size(), edit.newFirst);
      made.insert(made.end(), news.begin() + edit.newFirst, news.begin() + edit.newFirst + edit.newCount);
      at = edit.oldFirst + edit.oldCount;
      length += edit.oldCount + edit.newCount;
    }
    made.insert(made.end(), olds.begin() + at, olds.end());
    ASSERT_EQ(made, news);
    // What is once on each side, after what both begin with, is held in place, which may cost a step.
    const auto rests = std::mismatch(olds.begin(), olds.end(), news.begin(), news.end());
    const bool anchored = std::any_of(rests.first, olds.end(), [&](std::uint32_t id) {
      return std::count(rests.first, olds.end(), id) == 1 && std::count(rests.second, news.end(), id) == 1;
    });
    if (!anchored) {
      ASSERT_EQ(length, ShortestScript(olds, news)) << round;
    }
  }
}

/// Far beyond what the search follows step by step; the answer has to be right all the same.
TEST(LineDifference, LongSequencesWithoutOrder) {
  std::mt19937 source(7);
  const auto random = [&] { return static_cast<std::uint32_t>(source()); };
  std::vector<std::uint32_t> olds(30000), news(30000);
  for (auto* side : {&olds, &news}) {
    for (std::uint32_t& id : *side) id = random() % 50;
  }
  std::size_t kept = olds.size();
  for (const Edit& edit : Differences(olds, news)) kept -= edit.oldCount;
  EXPECT_GT(kept, olds.size() / 10);
}

TEST(LineDifference, WordsAndPairs) {
  const auto differing = [](std::string_view olds, std::string_view news) {
    std::string text;
    const WordDifference found = DifferingWords(olds, news);
    for (const ByteRange& range : found.oldRanges) text.append("-").append(olds.substr(range.offset, range.length));
    for (const ByteRange& range : found.newRanges) text.append("+").append(news.substr(range.offset, range.length));
    return text;
  };
  EXPECT_EQ(differing("x = Größe(1)", "x = Grösse(1)"), "-Größe+Grösse");
  EXPECT_EQ(differing("a b", "a b"), "");
  EXPECT_EQ(differing("a", "a, c"), "+, c");
  const std::array<std::string_view, 2> olds{"If x Then", "y = 1"};
  const std::array<std::string_view, 3> news{"z = 5", "If xx Then", "y = 12"};
  std::string pairs;
  for (const LinePair& pair : PairLines(olds, news, {0, 2, 0, 3})) {
    pairs +=
        std::to_string(static_cast<int>(pair.oldLine)) + ":" + std::to_string(static_cast<int>(pair.newLine)) + " ";
  }
  EXPECT_EQ(pairs, "-1:0 0:1 1:2 ");
}

}  // namespace
}  // namespace quillmate::symbols
