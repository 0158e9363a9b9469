#include <limits>

#include <gtest/gtest.h>

#include <quillmate/text/characters.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::text {
namespace {

TEST(Windows1252, EveryByteSurvivesUnicode) {
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(CodeFromUtf8(Utf8FromCode(all)), all);
  EXPECT_EQ(CodeFromUtf16(Utf16FromCode(all)), all);
  EXPECT_TRUE(IsValidUtf8(Utf8FromCode(all)));
  EXPECT_EQ(ToUnicode(159), u'\u0178');
  EXPECT_EQ(ToUnicode(128), u'\u20AC');
}

TEST(Windows1252, UnknownAndMalformedBecomeQuestionMarks) {
  EXPECT_EQ(CodeFromUtf8("a\xCE\xB1z"), "a?z");
  EXPECT_EQ(CodeFromUtf8("\xF0\x9F\x98\x80"), "?");
  EXPECT_EQ(CodeFromUtf16(u"\xD83D\xDE00!"), "?!");
  EXPECT_EQ(CodeFromUtf8("\xE4x"), "?x");
  for (const std::string_view bad : {"\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xC3", "\xE0\x80\x80"}) {
    EXPECT_FALSE(IsValidUtf8(bad));
  }
}

TEST(Operations, LeadingNumberReadsWhatStandsInFront) {
  const struct {
    std::string_view text;
    double value;
  } cases[] = {{"5", 5},    {" -12abc", -12}, {"3.5;7", 3.5}, {"abc", 0},    {"", 0},
               {"nan", 0},  {"+8", 8},        {"inf", 0},     {"1e3", 1000}, {"-", 0},
               {".5", 0.5}, {"8,5", 8},       {"0x10", 0},    {"0.5", 0.5},  {"09", 9}};
  for (const auto& c : cases) EXPECT_EQ(LeadingNumber(c.text), c.value) << c.text;
}

TEST(Operations, PiecesAndEnds) {
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(Split("a;;b;", ";"), (std::vector<std::string_view>{"a", "", "b", ""}));
  EXPECT_EQ(Split("", ";"), (std::vector<std::string_view>{""}));
  EXPECT_EQ(TextBefore("Arial,12", ","), "Arial");
  EXPECT_EQ(TextAfterLast("a,b,12", ","), "12");
  EXPECT_EQ(TextAfterLast("Arial", ","), "Arial");
  EXPECT_EQ(Trim("  a b "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_TRUE(StartsWithIgnoreCase("ATTRIBUTE VB_", "Attribute "));
  EXPECT_FALSE(StartsWithIgnoreCase("Attr", "Attribute "));
}

TEST(Characters, UmlautsCountAndFold) {
  EXPECT_TRUE(IsIdentifierCharacter('\304'));
  EXPECT_FALSE(IsIdentifierCharacter('\351'));
  EXPECT_FALSE(IsIdentifierCharacter('.'));
  EXPECT_EQ(ToLower('\334'), 0xFC);
  EXPECT_EQ(ToLower('\327'), 0xD7);
  EXPECT_EQ(ToLower('\237'), 0xFF);
}

}  // namespace
}  // namespace quillmate::text
