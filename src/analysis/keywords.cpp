
#include "keywords_p.h"

namespace quillmate::analysis {
namespace {

constexpr Keyword kKeywords[] = {{"Access"},
                                 {"And"},
                                 {"As"},
                                 {"Binary"},
                                 {"Boolean"},
                                 {"ByRef"},
                                 {"Byte"},
                                 {"ByVal"},
                                 {"Call"},
                                 {"Case"},
                                 {"Cbool"},
                                 {"Cbyte"},
                                 {"Cint"},
                                 {"Clng"},
                                 {"Close"},
                                 {"Const"},
                                 {"Debug"},
                                 {"Declare", kHasDeclare},
                                 {"DefBool"},
                                 {"DefByte"},
                                 {"DefCur"},
                                 {"DefDate"},
                                 {"DefDbl"},
                                 {"DefDec"},
                                 {"DefInt"},
                                 {"DefLng"},
                                 {"DefObj"},
                                 {"DefSng"},
                                 {"DefStr"},
                                 {"DefVar"},
                                 {"Dim"},
                                 {"Do"},
                                 {"Double"},
                                 {"Else"},
                                 {"ElseIf"},
                                 {"Empty"},
                                 {"End"},
                                 {"Enum"},
                                 {"Erase"},
                                 {"Error"},
                                 {"Event"},
                                 {"Exit", kHasExit},
                                 {"Explicit"},
                                 {"False"},
                                 {"For"},
                                 {"Friend", kHasFriend},
                                 {"Function", kHasFunction},
                                 {"Get", kHasGet},
                                 {"Global"},
                                 {"GoSub"},
                                 {"GoTo"},
                                 {"If"},
                                 {"Input"},
                                 {"Integer"},
                                 {"Is"},
                                 {"LBound"},
                                 {"Let", kHasLet},
                                 {"Lib"},
                                 {"Lock"},
                                 {"Long"},
                                 {"Loop"},
                                 {"Mid"},
                                 {"New"},
                                 {"Next"},
                                 {"Not"},
                                 {"Nothing"},
                                 {"Null"},
                                 {"Object"},
                                 {"On"},
                                 {"Open"},
                                 {"Preserve"},
                                 {"Optional"},
                                 {"Or"},
                                 {"ParamArray"},
                                 {"Print"},
                                 {"Private", kHasPrivate},
                                 {"Property", kHasProperty},
                                 {"Public"},
                                 {"Put"},
                                 {"RaiseEvent"},
                                 {"Random"},
                                 {"Redim"},
                                 {"Resume"},
                                 {"Seek"},
                                 {"Select"},
                                 {"Set", kHasSet},
                                 {"Shared"},
                                 {"Single"},
                                 {"Static"},
                                 {"Step"},
                                 {"Stop"},
                                 {"String"},
                                 {"Sub", kHasSub},
                                 {"Then"},
                                 {"To"},
                                 {"True"},
                                 {"Type"},
                                 {"UBound"},
                                 {"Unlock"},
                                 {"Until"},
                                 {"Variant"},
                                 {"Wend"},
                                 {"While"},
                                 {"With"},
                                 {"WithEvents"},
                                 {"Write"}};

constexpr std::size_t kShortest = 2;
constexpr std::size_t kLongest = 10;
constexpr std::size_t kSlots = 1024;

constexpr std::size_t Slot(const char* word, std::size_t length) noexcept {
  const auto at = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(word[i])); };
  return (at(0) * 37 + at(1) * 151 + at(length - 1) * 11 + static_cast<unsigned>(length) * 263) % kSlots;
}

/// Slot of a word -> 1 + index of its keyword, linear probing; 0 is free.
constexpr std::array<std::uint8_t, kSlots> MakeSlots() {
  std::array<std::uint8_t, kSlots> slots{};
  std::uint8_t number = 0;
  for (const Keyword& keyword : kKeywords) {
    std::size_t slot = Slot(keyword.word.data(), keyword.word.size());
    while (slots[slot] != 0) slot = (slot + 1) % kSlots;
    slots[slot] = ++number;
  }
  return slots;
}

constexpr auto kSlotTable = MakeSlots();

/// For words of a few characters, where a call would cost more than the comparison.
bool IsSame(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  std::size_t i = 0;
  while (i < a.size() && a[i] == b[i]) ++i;
  return i == a.size();
}

}  // namespace

const Keyword* FindKeyword(std::string_view word) noexcept {
  if (word.size() < kShortest || word.size() > kLongest) return nullptr;
  for (std::size_t slot = Slot(word.data(), word.size()); kSlotTable[slot] != 0; slot = (slot + 1) % kSlots) {
    const Keyword& keyword = kKeywords[kSlotTable[slot] - 1];
    if (IsSame(keyword.word, word)) return &keyword;
  }
  return nullptr;
}

}  // namespace quillmate::analysis
