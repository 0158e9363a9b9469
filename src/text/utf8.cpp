#include <algorithm>

#include <quillmate/text/utf8.h>

namespace quillmate::text {
namespace {

bool IsHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

Utf8Character ReadUtf8(std::string_view bytes) noexcept {
  constexpr Utf8Character kMalformed{0, 0};
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char first = at(0);
  if (first < 0x80) return {first, 1};
  std::size_t length = 0;
  char32_t character = 0;
  char32_t smallest = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2, character = first & 0x1FU, smallest = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3, character = first & 0x0FU, smallest = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4, character = first & 0x07U, smallest = 0x10000;
  } else {
    return kMalformed;
  }
  if (bytes.size() < length) return kMalformed;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return kMalformed;
    character = (character << 6) | (at(i) & 0x3FU);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < smallest || character > 0x10FFFF || surrogate) return kMalformed;
  return {character, length};
}

void AppendUtf8(std::string& utf8, char32_t character) {
  const auto tail = [&](unsigned shift) { utf8 += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
  } else if (character < 0x800) {
    utf8 += static_cast<char>(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    utf8 += static_cast<char>(0xE0 | (character >> 12));
    tail(6), tail(0);
  } else {
    utf8 += static_cast<char>(0xF0 | (character >> 18));
    tail(12), tail(6), tail(0);
  }
}

std::string WellFormedUtf8(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  while (!bytes.empty()) {
    const Utf8Character read = ReadUtf8(bytes);
    AppendUtf8(utf8, read.length == 0 ? kReplacementCharacter : read.character);
    bytes.remove_prefix(std::max<std::size_t>(read.length, 1));
  }
  return utf8;
}

std::string Utf8FromUtf16(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t at = 0; at < utf16.size(); ++at) {
    const char16_t unit = utf16[at];
    if (IsHighSurrogate(unit) && at + 1 < utf16.size() && IsLowSurrogate(utf16[at + 1])) {
      AppendUtf8(utf8, 0x10000 + ((unit - 0xD800U) << 10) + (utf16[++at] - 0xDC00U));
    } else {
      AppendUtf8(utf8, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacementCharacter : unit);
    }
  }
  return utf8;
}

}  // namespace quillmate::text
