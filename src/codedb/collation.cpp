#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include <sqlite3.h>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

#include "collation_p.h"
#include "collation_table_p.h"

namespace quillmate::codedb {
namespace {

constexpr std::uint8_t kPlainMark = kCharacterWeights['a'].marks[0];

/// The letters of the characters that names are nearly always made of: those below 128 that are one letter without a
/// mark. 0 stands for every other byte.
constexpr std::array<std::uint8_t, 256> MakePlainLetters() {
  std::array<std::uint8_t, 256> plain{};
  for (std::size_t code = 0; code < 128; ++code) {
    const CharacterWeights& weights = kCharacterWeights[code];
    const bool one = weights.letters[1] == 0 && weights.marks[1] == 0 && weights.marks[0] == kPlainMark;
    if (one) plain[code] = weights.letters[0];
  }
  return plain;
}
constexpr auto kPlainLetters = MakePlainLetters();

std::uint8_t PlainLetter(std::string_view text, std::size_t at) noexcept {
  return kPlainLetters[static_cast<unsigned char>(text[at])];
}

using Level = std::array<std::uint8_t, 3> CharacterWeights::*;

/// Characters that Windows-1252 lacks come from foreign files only. They sort after all others by code point, bytes
/// that are no UTF-8 after these.
constexpr std::uint32_t kForeign = 0x100;
constexpr std::uint32_t kMalformed = 0x200000;

/// Hands out the weights of a text on one level, one after the other.
class WeightReader {
 public:
  WeightReader(Level level, std::string_view text, bool behindL) noexcept
      : level_(level), text_(text), behindL_(behindL) {}

  /// 0 after the last one.
  std::uint32_t Next() noexcept {
    while (at_ == weights_.size() || weights_[at_] == 0) {
      if (text_.empty()) return 0;
      ReadCharacter();
    }
    return weights_[at_++];
  }

 private:
  void ReadCharacter() noexcept {
    const text::Utf8Character read = text::ReadUtf8(text_);
    const auto byte = static_cast<unsigned char>(text_.front());
    text_.remove_prefix(std::max<std::size_t>(read.length, 1));
    at_ = 0;
    const auto code = read.length == 0 ? std::nullopt : text::FromUnicode(read.character);
    if (code) {
      const CharacterWeights& character = *code == kMiddleDot && behindL_ ? kDotBehindL : kCharacterWeights[*code];
      std::copy((character.*level_).begin(), (character.*level_).end(), weights_.begin());
    } else if (level_ == &CharacterWeights::marks) {
      weights_ = {kPlainMark};
    } else {
      weights_ = {read.length == 0 ? kMalformed + byte : kForeign + read.character};
    }
    behindL_ = code == 'l' || code == 'L';
  }

  static constexpr unsigned char kMiddleDot = 0xB7;

  Level level_;
  std::string_view text_;
  bool behindL_;
  /// Of the character read last; ends before the first 0.
  std::array<std::uint32_t, 3> weights_{};
  std::size_t at_ = 0;
};

int CompareLevel(Level level, std::string_view a, std::string_view b, bool behindL) noexcept {
  WeightReader readerA(level, a, behindL);
  WeightReader readerB(level, b, behindL);
  while (true) {
    const std::uint32_t x = readerA.Next();
    const std::uint32_t y = readerB.Next();
    if (x != y) return x < y ? -1 : 1;
    if (x == 0) return 0;
  }
}

bool ContinuesCharacter(std::string_view text, std::size_t at) noexcept {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

/// Compares two texts whose first `at` bytes sort alike.
int CompareFrom(std::size_t at, std::string_view a, std::string_view b) noexcept {
  while (at > 0 && (ContinuesCharacter(a, at) || ContinuesCharacter(b, at))) --at;
  const bool behindL = at > 0 && PlainLetter(a, at - 1) == kPlainLetters['l'];
  a.remove_prefix(at);
  b.remove_prefix(at);
  const int letters = CompareLevel(&CharacterWeights::letters, a, b, behindL);
  return letters != 0 ? letters : CompareLevel(&CharacterWeights::marks, a, b, behindL);
}

int CompareForSqlite(void*, int aSize, const void* a, int bSize, const void* b) {
  return CompareText({static_cast<const char*>(a), static_cast<std::size_t>(aSize)},
                     {static_cast<const char*>(b), static_cast<std::size_t>(bSize)});
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) noexcept {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    const std::uint8_t x = PlainLetter(a, i);
    const std::uint8_t y = PlainLetter(b, i);
    if (x == 0 || y == 0) return CompareFrom(i, a, b);
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  const std::string_view longer = a.size() > b.size() ? a : b;
  if (PlainLetter(longer, common) == 0) return CompareFrom(common, a, b);
  return a.size() < b.size() ? -1 : 1;
}

bool RegisterCollation(sqlite3* db) {
  return sqlite3_create_collation_v2(db, kCollationName, SQLITE_UTF8, nullptr, CompareForSqlite, nullptr) == SQLITE_OK;
}

}  // namespace quillmate::codedb
