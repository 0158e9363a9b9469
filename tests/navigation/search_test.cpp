#include <algorithm>
#include <random>

#include <quillmate/navigation/search.h>

#include "project_fixture.h"

namespace quillmate::navigation {
namespace {

TEST(Find, CaseWordLimitsAndStart) {
  const struct {
    std::string_view text, searched;
    std::size_t start;
    bool wholeWord;
    std::optional<std::size_t> found;
  } cases[] = {
      {"Sub Foo()\r\nfoo", "FOO", 0, false, 4},
      {"Sub Foo()\r\nfoo", "foo", 5, false, 11},  // the line break counts twice
      {"Sub Foo()\r\nfoo", "foo", 12, false, {}},
      {"Sub Foo()\r\nfoo", "()\r\nF", 0, false, 7},
      {"Sub", "sub", 99, false, {}},
      {"\304rger \344RGER", "\344rger", 1, false, 6},
      {"FooBar Foo_ Foo1 \374Foo Foo", "foo", 0, true, 22},
      {"caf\351Foo", "foo", 0, true, 4},  // an accented letter is no identifier character
      {"x.Foo(", ".foo(", 0, true, 1},    // limits of what is no word are everywhere
      {"Foo.x", "foo.", 0, true, 0},
      {"aFoo.", "foo.", 0, true, {}},
      {"a", "", 0, false, {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Find(c.text, c.searched, c.start, c.wholeWord), c.found) << c.text << " for " << c.searched;
  }
}

char FoldSlowly(char c) {
  static const std::string kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ\304\326\334\311\212";
  static const std::string kLower = "abcdefghijklmnopqrstuvwxyz\344\366\374\351\232";
  const std::size_t at = kUpper.find(c);
  return at == std::string::npos ? c : kLower[at];
}

/// Each position in turn, character by character.
std::vector<std::size_t> FindSlowly(std::string text, std::string searched, bool wholeWord) {
  static const std::string kWord = "abcdefghijklmnopqrstuvwxyz\344\366\374\337_0123456789";
  std::ranges::transform(text, text.begin(), FoldSlowly);
  std::ranges::transform(searched, searched.begin(), FoldSlowly);
  const auto isWord = [&](std::size_t i) { return i < text.size() && kWord.find(text[i]) != std::string::npos; };
  const auto isLimit = [&](std::size_t i) { return i == 0 || !isWord(i - 1) || !isWord(i); };
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i + searched.size() <= text.size(); ++i) {
    if (text.compare(i, searched.size(), searched) != 0) continue;
    if (!wholeWord || (isLimit(i) && isLimit(i + searched.size()))) found.push_back(i);
  }
  return found;
}

TEST(Find, AgreesWithLookingEverywhere) {
  static constexpr std::string_view kFragments = "aAbBzZ\344\304\337\351\311\212\232_1.$ \r\nxQ";
  std::mt19937 random(3);
  const auto draw = [&](std::size_t length, std::size_t kinds) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += kFragments[random() % kinds];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::size_t kinds = 2 + random() % (kFragments.size() - 2);
    const std::string text = draw(random() % 40, kinds);
    const std::string searched = draw(1 + random() % 4, kinds);
    const bool wholeWord = random() % 2 == 0;
    const std::vector<std::size_t> expected = FindSlowly(text, searched, wholeWord);
    const std::size_t start = random() % 42;
    const auto next = std::ranges::lower_bound(expected, start);
    ASSERT_EQ(Find(text, searched, start, wholeWord), next == expected.end() ? std::nullopt : std::optional(*next))
        << text << " for " << searched << " from " << start;
    std::vector<std::size_t> apart;
    for (const std::size_t at : expected) {
      if (apart.empty() || at >= apart.back() + searched.size()) apart.push_back(at);
    }
    std::vector<std::size_t> all;
    for (const TextMatch& match : FindAll(text, searched, wholeWord)) all.push_back(match.position);
    ASSERT_EQ(all, apart) << text << " for " << searched;
  }
}

constexpr std::string_view kNotInModule = "Der Suchtext\r\nwurde im Modul nicht gefunden .\r\n";
constexpr std::string_view kNotInProject = "Der Suchtext wurde im gesamten Projekt nicht gefunden";
constexpr std::string_view kNoNextInModule =
    "Der Suchtext\r\nwurde ausgehend von  der letzten Position \r\nim Modul nicht gefunden .\r\n";
constexpr std::string_view kNoNextInProject = "Der Suchtext wurde nicht gefunden";
constexpr std::string_view kZoom = "zoom Steht im Zoom Modus nicht zur Verf\303\274gung";

/// Three modules: "Foo Bar Foo", "Foo", "x Bar".
class SearchCommands : public Project {
 protected:
  SearchCommands() {
    Write(1, "|\237f|Foo|n\237| Bar |\237f|Foo|n\237|");
    Write(2, "Foo");
    Write(3, "x Bar");
    views_.Load(folder.Path(), 3);
  }

  static std::string Describe(const SearchResult& result) {
    if (result.outcome == SearchOutcome::kFound) {
      return std::to_string(result.view.value) + ":" + std::to_string(result.position) + "+" +
             std::to_string(result.length);
    }
    return (result.outcome == SearchOutcome::kZoomMode ? "zoom " : "") + std::string(result.message);
  }

  CodeViews views_;
};

TEST_F(SearchCommands, FindFirstAndNext) {
  const struct {
    bool next;
    SearchRequest request;
    int view;
    std::size_t selection;
    std::string_view result;
  } cases[] = {
      // From the top: not what the module begins with.
      {false, {"foo"}, 0, 9, "0:8+3"},
      {false, {"foo"}, 1, 0, kNotInModule},
      {false, {" bar "}, 0, 0, "0:4+3"},
      {false, {"bar", true}, 0, 0, "0:4+3"},
      {false, {"x", false, true}, 2, 0, kNotInProject},
      {false, {"foo", false, true}, 2, 0, "0:8+3"},
      {false, {"r\r\n", false, true}, 0, 0, "2:4+3"},
      {false, {"  "}, 0, 0, ""},
      {false, {"foo", false, false, true}, 0, 0, kZoom},
      {false, {"bar", false, true, false, true}, 0, 0, kNotInProject},  // typed with foreign characters
      // On from the selection.
      {true, {"foo"}, 0, 7, "0:8+3"},
      {true, {"foo"}, 0, 8, kNoNextInModule},
      {true, {"x"}, 2, 0, kNoNextInModule},
      {true, {"bar", false, true}, 0, 3, "0:4+3"},
      {true, {"bar", false, true}, 0, 4, "2:2+3"},
      {true, {"bar", false, true}, 2, 2, "0:4+3"},
      {true, {"foo", false, true}, 1, 0, "0:8+3"},
      {true, {"foo", false, true}, 0, 8, "0:8+3"},  // the current module comes last, from its top
      {true, {"x", false, true}, 2, 0, kNoNextInProject},
      {true, {"foo", false, true, true}, 0, 0, kZoom},
  };
  for (const auto& c : cases) {
    views_.SetCurrent({c.view});
    views_.View({c.view}).Select(c.selection, 1);
    const SearchResult result = c.next ? FindNext(views_, c.request) : FindFirst(views_, c.request);
    EXPECT_EQ(Describe(result), c.result)
        << c.request.text << (c.next ? " on from " : " in ") << c.view << ':' << c.selection;
    EXPECT_EQ(views_.Current().value, c.view);
  }
  views_.Reset();
  EXPECT_EQ(Describe(FindFirst(views_, {"foo", false, true})), kNotInProject);
}

TEST_F(SearchCommands, AllHitsWithLinesAndRoutines) {
  Add(1, 1, "A", 2, 4);
  Add(2, 1, "B", 3, 3);
  Write(1, "foo\r\n|\237f|Foo|n\237|oofoo\r\n\r\nfoo\r\nx\r\nFoo");
  views_.Load(folder.Path(), 3);
  const auto list = [&](std::string_view searched, bool wholeWord) {
    std::string lines;
    for (const ModuleHits& module : AllHits(database, views_, {std::string(searched), wholeWord})) {
      for (const Hit& hit : module.hits) {
        lines += std::to_string(module.view.value) + ":" + std::to_string(hit.match.position) + " " +
                 std::to_string(hit.line.value) + " " +
                 (hit.routine < 0 ? "-" : module.routines[static_cast<std::size_t>(hit.routine)].name) + " " +
                 std::string(LineAround(views_.View(module.view), hit.match).text) + "\n";
      }
    }
    return lines;
  };
  EXPECT_EQ(list("foo", false),
            "0:0 1 - foo\n0:5 2 A Foooofoo\n0:10 2 A Foooofoo\n0:17 4 A foo\n0:25 6 - Foo\n1:0 1 - Foo\n");
  EXPECT_EQ(list("foo", true), "0:0 1 - foo\n0:17 4 A foo\n0:25 6 - Foo\n1:0 1 - Foo\n");
  EXPECT_EQ(list("bar", false), "2:2 1 - x Bar\n");
  EXPECT_EQ(list("", false) + list("nirgends", false), "");
}

TEST(KeepMatchesWithin, CountsEveryPartOfAMatch) {
  // x = "ab" ' ab  with a string at 4 to 7 and a comment from 9 on
  const std::vector<StyleRun> runs = {{0, 1, Span::kPlain, true},
                                      {4, 4, Span::kString, false},
                                      {9, 2, Span::kComment, false},
                                      {11, 2, Span::kComment, true}};
  const std::vector<TextMatch> all = {{0, 1}, {3, 2}, {4, 4}, {5, 2}, {6, 5}, {7, 1}, {9, 4}, {12, 1}, {13, 2}};
  const struct {
    MatchWithin within;
    std::vector<std::size_t> left;
  } cases[] = {{MatchWithin::kEverything, {0, 3, 4, 5, 6, 7, 9, 12, 13}},
               {MatchWithin::kNoComments, {0, 3, 4, 5, 7, 13}},
               {MatchWithin::kStrings, {4, 5, 7}},
               {MatchWithin::kComments, {9, 12}}};
  for (const auto& c : cases) {
    std::vector<TextMatch> matches = all;
    KeepMatchesWithin(matches, runs, c.within);
    std::vector<std::size_t> left;
    for (const TextMatch& match : matches) left.push_back(match.position);
    EXPECT_EQ(left, c.left) << static_cast<int>(c.within);
  }
}

/// What a list shows of a long line: so many characters, the match in their middle unless the line ends before.
TEST(LineAround, KeepsToALimit) {
  const CodeView view("ab\r\n0123456789\r\n");
  const struct {
    TextMatch match;
    std::string_view piece;
    bool cutBefore;
    bool cutBehind;
  } cases[] = {
      {{0, 2}, "ab", false, false},    {{4, 1}, "01234", false, true}, {{6, 1}, "01234", false, true},
      {{7, 1}, "12345", true, true},   {{8, 2}, "34567", true, true},  {{13, 1}, "56789", true, false},
      {{7, 9}, "34567", true, true},   {{2, 2}, "ab", false, false},   {{16, 0}, "", false, false},
      {{14, 1}, "56789", true, false},
  };
  for (const auto& c : cases) {
    const LinePiece piece = LineAround(view, c.match, 5);
    EXPECT_EQ(piece.text, c.piece) << c.match.position;
    EXPECT_EQ(piece.cutBefore, c.cutBefore) << c.match.position;
    EXPECT_EQ(piece.cutBehind, c.cutBehind) << c.match.position;
  }
}

}  // namespace
}  // namespace quillmate::navigation
