#include <utility>

#include <gtest/gtest.h>

#include <quillmate/export/html.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "soup.h"

namespace quillmate::output {
namespace {

using text::ReplaceAll;

/// The replacements one after the other, each over the whole text.
std::string ReplaceInTurn(std::string html, const text::CodeLook& look) {
  const std::string span = "<span style=\"color:#\"; >";
  const std::pair<std::string_view, std::string> steps[] = {
      {"&", "&#38;"},
      {"<", "&lt;"},
      {">", "&gt;"},
      {"\344", "&auml;"},
      {"\366", "&ouml;"},
      {"\374", "&uuml;"},
      {"\304", "&Auml;"},
      {"\326", "&Ouml;"},
      {"\334", "&Uuml;"},
      {"\337", "&szlig;"},
      {"\"", "&#34;"},
      {":", "&#58;"},
      {")", "&#41;"},
      {"(", "&#40;"},
      {"+", "&#43;"},
      {text::SpanClose, "</span>"},
      {text::CommentOpen, ReplaceAll(span, "#", ColourToHex(look.commentColour))},
      {text::KeywordOpen, ReplaceAll(span, "#", ColourToHex(look.keywordColour))},
      {text::StringOpen, ReplaceAll(span, "#", ColourToHex(look.stringColour))},
      {text::HeaderLineOpen, look.boldRoutines ? "<b>" : ""},
      {text::HeaderLineClose, look.boldRoutines ? "</b>" : ""},
  };
  for (const auto& [from, to] : steps) html = ReplaceAll(html, from, to);
  return "<pre><span style=\"font-family=" + look.fontName + ",Arial; font-size=" + std::to_string(look.fontSize) +
         "pt\"; >" + html + "</span></pre>";
}

/// What is between the frame's tags with the default look.
std::string Body(std::string_view marked, bool bold) {
  text::CodeLook look = settings::LookOf({});
  look.boldRoutines = bold;
  const std::string html = BuildHtml(marked, look);
  const std::string_view head = "<pre><span style=\"font-family=MS Sans Serif,Arial; font-size=10pt\"; >";
  const std::string_view end = "</span></pre>";
  EXPECT_TRUE(html.starts_with(head) && html.ends_with(end)) << html;
  return html.substr(head.size(), html.size() - head.size() - end.size());
}

TEST(BuildHtml, KnownTexts) {
  const struct {
    std::string_view marked, bold, plain;
  } cases[] = {
      {"", "", ""},
      {"\t\251 \200\r\n\237", "\t\251 \200\r\n\237", "\t\251 \200\r\n\237"},
      {"|\237k|' a < b & c|n\237|", "<span style=\"color:#008000\"; >' a &lt; b &#38; c</span>",
       "<span style=\"color:#008000\"; >' a &lt; b &#38; c</span>"},
      {"Debug.Print (x + 1): y", "Debug.Print &#40;x &#43; 1&#41;&#58; y", "Debug.Print &#40;x &#43; 1&#41;&#58; y"},
      {"|\237s|\"\304\326\334\"|n\237|\344\366\374\337",
       "<span style=\"color:#800000\"; >&#34;&Auml;&Ouml;&Uuml;&#34;</span>&auml;&ouml;&uuml;&szlig;",
       "<span style=\"color:#800000\"; >&#34;&Auml;&Ouml;&Uuml;&#34;</span>&auml;&ouml;&uuml;&szlig;"},
      {"|\237x||\237f|Sub|n\237| A|y\237|", "<b><span style=\"color:#000080\"; >Sub</span> A</b>",
       "<span style=\"color:#000080\"; >Sub</span> A"},
      {"&lt; |\237b| # |n\237 |", "&#38;lt; |\237b| # |n\237 |", "&#38;lt; |\237b| # |n\237 |"},
      {"|\237x|n\237|", "|\237x</span>", "|\237x</span>"},
      {"|y|\237x|\237||y\237|", "|y<b>\237|</b>", ""},
      {"|y|y\237|\237|", "|y</b>\237|", "|y\237|"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Body(c.marked, true), c.bold) << c.marked;
    EXPECT_EQ(Body(c.marked, false), c.plain) << c.marked;
  }
}

TEST(BuildHtml, AgreesWithTheReplacementsInTurn) {
  text::CodeLook odd = settings::LookOf({});
  odd.keywordColour = 0;
  odd.commentColour = -1;
  odd.stringColour = 0x7F123456;
  odd.fontName = "|n\237|<\344&#";
  odd.fontSize = -3;
  odd.boldRoutines = false;
  for (unsigned seed = 0; seed < 40000; ++seed) {
    const std::string soup = MarkerSoup(seed, 1 + seed % 60);
    for (const text::CodeLook& look : {settings::LookOf({}), odd}) {
      ASSERT_EQ(BuildHtml(soup, look), ReplaceInTurn(soup, look)) << seed;
    }
  }
}

TEST(BuildHtml, AgreesAcrossPieces) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    const std::string soup = MarkerSoup(seed, 100000);
    for (const bool bold : {true, false}) {
      text::CodeLook look = settings::LookOf({});
      look.boldRoutines = bold;
      EXPECT_TRUE(BuildHtml(soup, look) == ReplaceInTurn(soup, look)) << seed;
    }
  }
  const std::string longest(200000, '\334');
  EXPECT_TRUE(Body(longest, true) == EscapeHtml(longest));
}

TEST(ColourToHex, PartsOfTheValue) {
  const std::pair<std::int32_t, std::string_view> cases[] = {
      {32768, "#008000"},    {8388608, "#000080"},      {128, "#800000"},         {255, "#FF0000"},
      {16777215, "#FFFFFF"}, {0x01020304, "#0403102"},  {0xABCDE, "#DEBC0A"},     {0, "#000000"},
      {-1, "#FFFFFFFF0000"}, {-65536, "#0000FFFFFFFF"}, {0x7FFFFFFF, "#FFFF7FFF"}};
  for (const auto& [colour, hex] : cases) EXPECT_EQ(ColourToHex(colour), hex) << colour;
}

TEST(Html, CreditAndPreview) {
  EXPECT_EQ(AppendCredit("<pre></pre>", "Excel"),
            "<pre></pre>\r\n<br><span style=\" font-weight:bold;\"> Code eingef&uuml;gt mit: </span> "
            "<a style =\"color:#ffff00; background-color:#000080; font-weight:bold;\" "
            "href=\"\" target=\"blank\">Excel Quillmate</a>");
  EXPECT_EQ(PreviewDocument("<pre>\r\n</pre>", "Word"),
            "<HTML><HEAD><TITLE>Word Quillmate</TITLE></HEAD><BODY><pre>\r\n</pre></Body></HTML>\r\n");
}

}  // namespace
}  // namespace quillmate::output
