#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The words that the scanner marks, as the editor writes them. Matching is case-sensitive.
namespace quillmate::analysis {

/// What a marked word means for the line that holds it; the flags of a line's words are joined.
enum WordFlag : std::uint16_t {
  kHasSub = 1,
  kHasFunction = 2,
  kHasProperty = 4,
  kHasExit = 8,
  kHasPrivate = 16,
  kHasFriend = 32,
  kHasDeclare = 64,
  kHasGet = 128,
  kHasSet = 256,
  kHasLet = 512,
};

struct Keyword {
  std::string_view word;
  std::uint16_t flags = 0;
};

/// The phrases, matched as a whole (one blank between the words) before single words.
inline constexpr std::array<Keyword, 5> kPhrases = {{{"Option Base 1"},
                                                     {"Option Private Module", kHasPrivate},
                                                     {"Option Explicit"},
                                                     {"Option Compare Text"},
                                                     {"Option Compare Database"}}};
/// All phrases begin with this word, which is no keyword by itself.
inline constexpr std::string_view kPhraseStart = "Option";

/// The keyword that equals the word; nullptr when it is none.
const Keyword* FindKeyword(std::string_view word) noexcept;

}  // namespace quillmate::analysis
