#include <utility>

#include <gtest/gtest.h>

#include <quillmate/export/plain_text.h>
#include <quillmate/export/rtf.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "soup.h"

namespace quillmate::output {
namespace {

/// The replacements one after the other, each over the whole text.
std::string ReplaceInTurn(std::string body, bool bold) {
  const std::pair<std::string_view, std::string_view> steps[] = {
      {"\\", "\\\\"},
      {"{", "\\{"},
      {"}", "\\}"},
      {text::SpanClose, "\\cf0 "},
      {text::CommentOpen, "\\cf2 "},
      {text::KeywordOpen, "\\cf1 "},
      {text::StringOpen, "\\cf3 "},
      {"\t", "\\tab "},
      {text::HeaderLineOpen, bold ? "\\b " : ""},
      {text::HeaderLineClose, bold ? "\\b0 " : ""},
      {"\r\n", "\r\n\\par "},
  };
  for (const auto& [from, to] : steps) body = text::ReplaceAll(body, from, to);
  return body;
}

/// The markers taken out through a character that occurs nowhere, so that nothing comes together in between.
std::string StripInTurn(std::string plain) {
  for (const std::string_view marker : {text::SpanClose, text::CommentOpen, text::KeywordOpen, text::StringOpen,
                                        text::HeaderLineOpen, text::HeaderLineClose}) {
    plain = text::ReplaceAll(plain, marker, "\1");
  }
  return text::ReplaceAll(plain, "\1", "");
}

std::string Joined(const auto& produce) {
  std::string all;
  produce([&](std::string_view piece) { all += piece; });
  return all;
}

TEST(ColourBody, KnownTexts) {
  const struct {
    std::string_view marked, bold, plain;
  } cases[] = {
      {"", "", ""},
      {"a\r\nb\r\n", "a\r\n\\par b\r\n\\par ", "a\r\n\\par b\r\n\\par "},
      {"|\237x||\237f|Sub|n\237| A()|y\237|", "\\b \\cf1 Sub\\cf0  A()\\b0 ", "\\cf1 Sub\\cf0  A()"},
      {"\t|\237s|\"{\\}\"|n\237| |\237k|' \344|n\237|", "\\tab \\cf3 \"\\{\\\\\\}\"\\cf0  \\cf2 ' \344\\cf0 ",
       "\\tab \\cf3 \"\\{\\\\\\}\"\\cf0  \\cf2 ' \344\\cf0 "},
      {"|n\237 |n\237|\237f| x", "|n\237 \\cf0 \237f| x", "|n\237 \\cf0 \237f| x"},
      {"|\237f|n\237|", "|\237f\\cf0 ", "|\237f\\cf0 "},
      {"|y|\237x|\237|\r|\237x|\n", "|y\\b \237|\r\\b \n", "\r\n\\par "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ColourBody(c.marked, true), c.bold) << c.marked;
    EXPECT_EQ(ColourBody(c.marked, false), c.plain) << c.marked;
  }
}

TEST(ColourBody, AgreesWithTheReplacementsInTurn) {
  for (unsigned seed = 0; seed < 40000; ++seed) {
    const std::string soup = MarkerSoup(seed, 1 + seed % 60);
    ASSERT_EQ(ColourBody(soup, true), ReplaceInTurn(soup, true)) << seed;
    ASSERT_EQ(ColourBody(soup, false), ReplaceInTurn(soup, false)) << seed;
    ASSERT_EQ(PlainText(soup), StripInTurn(soup)) << seed;
  }
}

TEST(ColourBody, AgreesAcrossPieces) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    const std::string soup = MarkerSoup(seed, 100000);
    for (const bool bold : {true, false}) {
      EXPECT_TRUE(ColourBody(soup, bold) == ReplaceInTurn(soup, bold)) << seed;
    }
    EXPECT_TRUE(Joined([&](const Sink& sink) { PlainText(soup, sink); }) == StripInTurn(soup)) << seed;
  }
}

TEST(WrapDocument, ExactBytes) {
  text::CodeLook look = settings::LookOf({});
  look.fontName = "Courier New";
  look.tabWidth = 10;
  EXPECT_EQ(WrapDocument("BODY", look),
            "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\fswiss MS Sans Serif;}\r\n"
            "{\\f1\\froman\\fcharset2 Symbol;}{\\f2\\fswiss MS Sans Serif;}{\\f3\\fswiss Courier New;}"
            "{\\f4\\fswiss\\fprq2 System;}}\r\n"
            "{\\colortbl\\red0\\green0\\blue0;\\red0\\green0\\blue128;\\red0\\green128\\blue0;\\red128\\green0\\blue0;}"
            "\r\n\\deflang1031\\pard\\li105\\tx567\\tx1134\\tx1701\\tx2268\\tx2835\\tx3402\\tx3969\\tx4536\\tx5103"
            "\\tx5670\\plain\\f3\\fs20 BODY}");
  look.fontName = "Arial Black";
  EXPECT_NE(DocumentHead(look).find("{\\f3\\fswiss Arial Black;}"), std::string::npos);
}

TEST(WrapDocument, TabStopsAreTruncatedBeforeTheyAreMultiplied) {
  const struct {
    int millimetres;
    std::string_view first, last;
  } cases[] = {{0, "\\tx0\\tx0", "\\tx0\\plain"},
               {3, "\\tx170\\tx340", "\\tx1700\\plain"},
               {5, "\\tx283\\tx566", "\\tx2830\\plain"},
               {7, "\\tx396\\tx792", "\\tx3960\\plain"},
               {32767, "\\tx1857888\\tx3715776", "\\tx18578880\\plain"}};
  for (const auto& c : cases) {
    text::CodeLook look = settings::LookOf({});
    look.tabWidth = c.millimetres;
    const std::string head = DocumentHead(look);
    EXPECT_NE(head.find(std::string("\\li105") + std::string(c.first)), std::string::npos) << head;
    EXPECT_NE(head.find(c.last), std::string::npos) << head;
  }
}

TEST(ColourEntry, PartsOfTheValue) {
  EXPECT_EQ(ColourEntry(16711680), "\\red0\\green0\\blue255;");
  EXPECT_EQ(ColourEntry(0x04030201), "\\red1\\green2\\blue1027;");
  EXPECT_EQ(ColourEntry(-65537), "\\red-1\\green0\\blue-1;");
}

}  // namespace
}  // namespace quillmate::output
