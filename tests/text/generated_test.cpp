#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/text/lines.h>
#include <quillmate/text/marked_walk.h>
#include <quillmate/text/name_table.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

/// What is quick against what is plainly right, on texts of few different characters, so that what matters comes often.
namespace quillmate::text {
namespace {

class Texts {
 public:
  explicit Texts(std::vector<std::string_view> pieces) : pieces_(std::move(pieces)) {}

  std::string Next(std::size_t most) {
    std::string text;
    for (std::size_t count = random_() % (most + 1); count > 0; --count) text += pieces_[random_() % pieces_.size()];
    return text;
  }

 private:
  std::vector<std::string_view> pieces_;
  std::mt19937 random_{20};
};

constexpr int kRounds = 3000;

TEST(Generated, ReplacingAndSplitting) {
  Texts texts({"a", "a", "b", ";", "ab"});
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = texts.Next(12);
    const std::string from = texts.Next(2);
    const std::string to = texts.Next(2);
    if (from.empty()) continue;
    std::string replaced;
    std::vector<std::string> pieces(1);
    for (std::size_t at = 0; at < text.size();) {
      if (text.compare(at, from.size(), from) == 0) {
        replaced += to;
        pieces.emplace_back();
        at += from.size();
      } else {
        replaced += text[at];
        pieces.back() += text[at++];
      }
    }
    EXPECT_EQ(ReplaceAll(text, from, to), replaced) << text << " " << from << " " << to;
    const auto split = Split(text, from);
    EXPECT_EQ(std::vector<std::string>(split.begin(), split.end()), pieces) << text << " " << from;
    EXPECT_EQ(Join(pieces, from), text);
    EXPECT_EQ(TextBefore(text, from), pieces.front());
  }
}

/// A line at a time; what ends it is told apart by hand.
std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines(1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\r' && text[at] != '\n') {
      lines.back() += text[at];
      continue;
    }
    if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
    lines.emplace_back();
  }
  return lines;
}

TEST(Generated, LinesInAnyStyle) {
  const std::string wide(61, 'w');
  Texts texts({"a", "\r", "\n", "\r\n", "bcd", wide, "\r\r\n"});
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = texts.Next(16);
    const std::vector<std::string> lines = LinesOf(text);
    EXPECT_EQ(NormalizeLineBreaks(text), Join(lines, "\r\n")) << ::testing::PrintToString(text);
    LineReader reader(text);
    std::vector<std::string> read;
    for (std::string_view line; reader.Next(line);) {
      read.emplace_back(line);
      const std::size_t left = text.size() - reader.Rest().size();
      EXPECT_EQ(LinesOf(text.substr(0, left)).size(), read.size() + (read.size() < lines.size() ? 1 : 0));
    }
    EXPECT_EQ(read, lines) << ::testing::PrintToString(text);
  }
}

constexpr std::array kMarkers{SpanClose, CommentOpen, KeywordOpen, StringOpen, HeaderLineOpen, HeaderLineClose};

/// Each kind of marker is looked for in the whole text, one after the other; what an earlier one has taken is gone.
std::string MarkedByReplacing(const std::string& text) {
  std::vector<int> kind(text.size(), -1);
  for (std::size_t marker = 0; marker < kMarkers.size(); ++marker) {
    for (std::size_t at = 0; (at = text.find(kMarkers[marker], at)) != std::string::npos;) {
      const auto first = kind.begin() + static_cast<std::ptrdiff_t>(at);
      const bool isFree = std::all_of(first, first + kMarkerLength, [](int taken) { return taken == -1; });
      if (!isFree) {
        ++at;
        continue;
      }
      std::fill(first, first + kMarkerLength, static_cast<int>(marker));
      at += kMarkerLength;
    }
  }
  std::string told;
  for (std::size_t at = 0; at < text.size();) {
    if (kind[at] == -1) {
      told += text[at++];
    } else {
      told.append("<").append(std::to_string(kind[at])).append(">");
      at += kMarkerLength;
    }
  }
  return told;
}

TEST(Generated, TheWalkIsReplacingOneMarkerAfterTheOther) {
  struct Teller {
    std::string told;
    bool afterCode = false;
    void Code(std::string_view bytes) {
      EXPECT_FALSE(bytes.empty() || afterCode);
      told += bytes;
      afterCode = true;
    }
    void Mark(Marker marker) {
      told.append("<").append(std::to_string(static_cast<int>(marker))).append(">");
      afterCode = false;
    }
  };
  Texts texts({"|\237k|", "|\237f|", "|\237s|", "|n\237|", "|\237x|", "|y\237|", "|", "\237", "n\237|", "\237f|", "x"});
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = texts.Next(10);
    Teller teller;
    WalkMarkedText(text, teller);
    EXPECT_EQ(teller.told, MarkedByReplacing(text)) << ::testing::PrintToString(text);
  }
}

TEST(Generated, NamesAreNumberedWithoutRegardToCase) {
  Texts texts({"a", "A", "b", "\344", "\304", "_", "1", "\337"});
  NameTable table;
  std::map<std::string, int> known;
  for (int round = 0; round < kRounds; ++round) {
    const std::string name = texts.Next(7);
    std::string folded = name;
    for (char& c : folded) c = static_cast<char>(ToLower(c));
    const auto found = known.find(folded);
    EXPECT_EQ(table.Find(name), found == known.end() ? NameTable::kNone : found->second) << name;
    if (round % 3 == 0) continue;
    const int number = known.try_emplace(folded, static_cast<int>(known.size())).first->second;
    EXPECT_EQ(table.Add(name), number) << name;
  }
  EXPECT_EQ(table.Size(), known.size());
  EXPECT_GT(known.size(), 300U) << "so many that the table has grown";
}

/// By the definition of UTF-8; nothing for bytes that are none.
std::optional<char32_t> CharacterAt(std::string_view bytes, std::size_t length) {
  static constexpr std::array<unsigned, 5> kLeads{0, 0, 0xC0, 0xE0, 0xF0};
  static constexpr std::array<char32_t, 5> kFirsts{0, 0, 0x80, 0x800, 0x10000};
  if (bytes.size() < length) return std::nullopt;
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (length == 1) return lead < 0x80 ? std::optional<char32_t>(lead) : std::nullopt;
  if (lead < kLeads[length] || lead - kLeads[length] >= (1U << (7 - length))) return std::nullopt;
  char32_t character = lead - kLeads[length];
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    if (next < 0x80 || next > 0xBF) return std::nullopt;
    character = character * 64 + (next - 0x80);
  }
  const bool isAllowed =
      character >= kFirsts[length] && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
  return isAllowed ? std::optional(character) : std::nullopt;
}

TEST(Generated, BytesThatMayBeUtf8) {
  Texts texts({"a", "abcdefgh", "\x80", "\x9F", "\xA0", "\xBF", "\xC1", "\xC2", "\xC3\xA4", "\xE0", "\xE2\x82\xAC",
               "\xED", "\xEF", "\xF0", "\xF0\x9F\x98\x80", "\xF4", "\xF5", "\xFF"});
  for (int round = 0; round < kRounds * 3; ++round) {
    const std::string bytes = texts.Next(6);
    std::string wellFormed;
    std::string code;
    std::size_t replaced = 0;
    bool isValid = true;
    for (std::size_t at = 0; at < bytes.size();) {
      std::size_t length = 1;
      std::optional<char32_t> character;
      for (; length <= 4 && !character; ++length) character = CharacterAt(std::string_view(bytes).substr(at), length);
      length = character ? length - 1 : 1;
      isValid = isValid && character;
      wellFormed += character ? bytes.substr(at, length) : "\xEF\xBF\xBD";
      const auto byte = character ? FromUnicode(*character) : std::nullopt;
      code += byte ? static_cast<char>(*byte) : '?';
      replaced += byte ? 0 : 1;
      at += length;
    }
    std::size_t counted = 0;
    const std::string shown = ::testing::PrintToString(bytes);
    EXPECT_EQ(IsValidUtf8(bytes), isValid) << shown;
    EXPECT_EQ(IsAscii(bytes), std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; })) << shown;
    EXPECT_EQ(WellFormedUtf8(bytes), wellFormed) << shown;
    EXPECT_EQ(CodeFromUtf8(bytes, &counted), code) << shown;
    EXPECT_EQ(counted, replaced) << shown;
    EXPECT_EQ(CountReplaced(bytes), replaced) << shown;
  }
}

TEST(Generated, UnitsThatMayBeUtf16) {
  constexpr std::array<char16_t, 8> kUnits{u'A', 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xE4};
  std::mt19937 random(16);
  for (int round = 0; round < kRounds; ++round) {
    std::u16string units;
    for (std::size_t count = random() % 6; count > 0; --count) units += kUnits[random() % kUnits.size()];
    std::string expected;
    for (std::size_t at = 0; at < units.size(); ++at) {
      const bool isHigh = units[at] >= 0xD800 && units[at] <= 0xDBFF;
      const bool isLow = units[at] >= 0xDC00 && units[at] <= 0xDFFF;
      const bool isPair = isHigh && at + 1 < units.size() && units[at + 1] >= 0xDC00 && units[at + 1] <= 0xDFFF;
      if (isPair) {
        AppendUtf8(expected, 0x10000U + ((units[at] - 0xD800U) << 10U) + (units[at + 1] - 0xDC00U));
        ++at;
      } else {
        AppendUtf8(expected, isHigh || isLow ? kReplacementCharacter : units[at]);
      }
    }
    EXPECT_EQ(Utf8FromUtf16(units), expected);
    EXPECT_TRUE(IsValidUtf8(expected));
  }
}

}  // namespace
}  // namespace quillmate::text
