#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 one character at a time.
namespace quillmate::text {

/// Stands for what can't be read.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// A character and the number of bytes that it takes; length 0 for bytes that are no UTF-8.
struct Utf8Character {
  char32_t character;
  std::size_t length;
};

/// The character at the start of `bytes`, which must not be empty. Overlong forms, surrogates and what is above
/// U+10FFFF are malformed.
Utf8Character ReadUtf8(std::string_view bytes) noexcept;

/// Appends a character, which must not be above U+10FFFF.
void AppendUtf8(std::string& utf8, char32_t character);

/// The same text with the replacement character for each byte that can't be read.
std::string WellFormedUtf8(std::string_view bytes);

/// UTF-16 as UTF-8; half a surrogate pair becomes the replacement character.
std::string Utf8FromUtf16(std::u16string_view utf16);

}  // namespace quillmate::text
