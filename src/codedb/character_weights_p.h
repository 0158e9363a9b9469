#pragma once

#include <array>
#include <cstdint>

namespace quillmate::codedb {

/// How one character sorts: its letters in the order of the alphabet, and what tells them from their bare base letters
/// (umlaut, accent, ligature). Both lists end before the first 0 or when full; two empty ones mean that the character
/// doesn't count. "Ä" is the letter of "a" and two marks, the bare letter's and the umlaut's.
struct CharacterWeights {
  std::array<std::uint8_t, 3> letters;
  std::array<std::uint8_t, 3> marks;
};

}  // namespace quillmate::codedb
