#include <iterator>
#include <random>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include <quillmate/navigation/code_view.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::navigation {
namespace {

std::ostream& operator<<(std::ostream& out, const StyleRun& run) {
  return out << run.start << '+' << run.length << " "
             << "pkcs"[static_cast<int>(run.span)] << (run.headerLine ? "!" : "");
}

std::string Describe(const PlainModule& module) {
  std::ostringstream out;
  for (const StyleRun& run : module.runs) out << run << ' ' << module.text.substr(run.start, run.length) << '\n';
  return out.str();
}

std::string RandomText(unsigned seed, std::initializer_list<std::string_view> fragments, std::size_t length) {
  std::mt19937 random(seed);
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += fragments.begin()[random() % fragments.size()];
  return text;
}

TEST(StripMarkers, RunsOfTheLook) {
  const struct {
    std::string_view marked, text, runs;
  } cases[] = {
      {"", "", ""},
      {"a |\237k|'b|n\237|", "a 'b", "2+2 c 'b\n"},
      {"|\237x||\237f|Sub|n\237| A()|y\237|\r\n\t|\237s|\"x\"|n\237|", "Sub A()\r\n\t\"x\"",
       "0+3 k! Sub\n3+4 p!  A()\n10+3 s \"x\"\n"},
      // A header with continuation lines, and an empty line in it.
      {"|\237x||\237f|Sub|n\237| A( _\r\n\r\nb)|y\237|", "Sub A( _\r\n\r\nb)",
       "0+3 k! Sub\n3+5 p!  A( _\n12+2 p! b)\n"},
      // Wrapped twice.
      {"|\237x||\237x|a |\237f|End|n\237||y\237||y\237| b", "a End b", "0+2 p! a \n2+3 k! End\n"},
      // Never closed, and closed without a beginning.
      {"|n\237|a|\237s|\"b\r\nc", "a\"b\r\nc", "1+2 s \"b\n5+1 s c\n"},
      // Parts of one look that meet are one run.
      {"|\237f|a|n\237||\237f|b|\237k|c|n\237||\237x||y\237|", "abc", "0+2 k ab\n2+1 c c\n"},
      // Overlaps and what only looks like a marker.
      {"|\237f|n\237|x|n\237|\237f|y", "|\237fx\237f|y", ""},
      {"|\237b| |n\237 |", "|\237b| |n\237 |", ""},
      {"|y|\237x|\237|", "|y\237|", "2+2 p! \237|\n"},
  };
  for (const auto& c : cases) {
    const PlainModule module = StripMarkers(c.marked);
    EXPECT_EQ(module.text, c.text);
    EXPECT_EQ(Describe(module), c.runs) << c.marked;
  }
}

/// The look of every character, taken step by step from the replacements that make the RTF.
std::pair<std::string, std::string> LooksInTurn(std::string marked) {
  const std::string_view markers[] = {text::SpanClose,  text::CommentOpen,    text::KeywordOpen,
                                      text::StringOpen, text::HeaderLineOpen, text::HeaderLineClose};
  for (char code = 1; const std::string_view marker : markers) {
    marked = text::ReplaceAll(marked, marker, std::string(1, code++));
  }
  std::string plain;
  std::string looks;
  char span = 'p';
  bool bold = false;
  for (const char c : marked) {
    if (c >= 1 && c <= 4) span = "pcks"[c - 1];
    if (c == 5 || c == 6) bold = c == 5;
    if (c >= 1 && c <= 6) continue;
    plain += c;
    looks += bold ? static_cast<char>(span - 32) : span;
  }
  return {plain, looks};
}

TEST(StripMarkers, AgreesWithTheReplacementsInTurn) {
  for (unsigned seed = 0; seed < 20000; ++seed) {
    const std::string marked = RandomText(seed,
                                          {"|\237k|", "|\237f|", "|\237s|", "|n\237|", "|n\237|", "|\237x|", "|y\237|",
                                           "|", "\237", "f|", "|y", "n\237|", "\r\n", "\r\n", "ab", " "},
                                          seed % 40);
    const auto [plain, looks] = LooksInTurn(marked);
    const PlainModule module = StripMarkers(marked);
    ASSERT_EQ(module.text, plain) << seed;
    std::string shown(plain.size(), 'p');
    std::size_t end = 0;
    for (const StyleRun& run : module.runs) {
      ASSERT_GE(run.start, end);
      ASSERT_GT(run.length, 0U);
      end = run.start + run.length;
      const char look = "pkcs"[static_cast<int>(run.span)];
      shown.replace(run.start, run.length, run.length, run.headerLine ? static_cast<char>(look - 32) : look);
    }
    for (std::size_t i = 0; i < plain.size(); ++i) {
      const bool lineBreak = plain[i] == '\n' || plain[i] == '\r';
      ASSERT_EQ(shown[i], lineBreak ? 'p' : looks[i]) << seed << " at " << i;
    }
  }
}

TEST(CodeView, LinesAndSelection) {
  CodeView view("ab\r\n\r\ncd\n\r\n");
  EXPECT_EQ(view.LineCount(), 4U);
  const std::size_t lines[] = {0, 0, 0, 0, 1, 1, 2, 2, 2, 2, 2, 3, 3};
  for (std::size_t offset = 0; offset < std::size(lines); ++offset) {
    EXPECT_EQ(view.LineFromChar(offset), lines[offset]) << offset;
  }
  view.Select(6, 100);
  EXPECT_EQ(view.SelText(), "cd\n\r\n");
  view.Select(100, 1);
  EXPECT_EQ(view.SelStart(), view.Length());
  EXPECT_EQ(CodeView().LineCount(), 1U);
  EXPECT_EQ(CodeView().LineFromChar(7), 0U);
}

/// Go to line as the view's control does it: probe, walk, select. Answers start and length of the selection. A line
/// break is one step for the caret, which never is inside one.
std::pair<std::size_t, std::size_t> GoByBisection(const std::string& text, long n) {
  const auto lineOf = [&](std::size_t pos) {
    long line = 0;
    for (std::size_t i = 0; i + 1 < pos; ++i) line += text[i] == '\r' && text[i + 1] == '\n';
    return line;
  };
  const std::size_t length = text.size();
  std::size_t hi = length;
  std::size_t lo = 0;
  std::size_t pos = length / 2;
  int rounds = 0;
  long line = lineOf(pos);
  while (line != n - 1 && line != n) {
    if (++rounds > 1000) return {length, 0};
    (line > n ? hi : lo) = pos;
    pos = (hi + lo) / 2;
    line = lineOf(pos);
  }
  const auto isBreak = [&](std::size_t i) { return text[i] == '\r' || text[i] == '\n'; };
  const auto toLineStart = [&] {
    if (pos > 0 && pos < length && text[pos - 1] == '\r' && text[pos] == '\n') --pos;
    while (pos > 0 && !isBreak(pos - 1)) --pos;
  };
  if (line == n) {
    toLineStart();
    pos -= pos > 0 ? 2 : 0;
  }
  toLineStart();
  std::size_t end = pos;
  while (end < length && text[end] != ' ') ++end;
  return {pos, end - pos};
}

TEST(CodeView, GoToLineAgreesWithTheBisection) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    CodeView view(RandomText(seed, {"\r\n", "\r\n", "Public Sub A()", "x", "\tEnd", " "}, seed % 50));
    const auto behind = static_cast<std::int32_t>(view.LineCount()) + 3;
    for (std::int32_t line = -2; line <= behind; ++line) {
      view.Select(seed, 1);
      view.GoToLine({line});
      ASSERT_EQ(std::pair(view.SelStart(), view.SelLength()), GoByBisection(view.Text(), line))
          << seed << " line " << line;
    }
  }
}

TEST(CodeView, FirstWordOfLine) {
  const struct {
    std::size_t caret;
    std::string_view selected;
  } cases[] = {{0, "Sub"},  {6, "Sub"},      {7, "\tx\r\nEnd"}, {10, "\tx\r\nEnd"}, {11, "End"},
               {15, "End"}, {18, "Sub\r\n"}, {21, "Sub\r\n"},   {22, "Sub\r\n"},    {23, ""}};
  for (const auto& c : cases) {
    CodeView view("Sub A\r\n\tx\r\nEnd A\r\nSub\r\n");
    view.Select(c.caret, 0);
    view.SelectFirstWordOfLine();
    EXPECT_EQ(view.SelText(), c.selected) << c.caret;
  }
}

}  // namespace
}  // namespace quillmate::navigation
