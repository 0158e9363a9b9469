#include <algorithm>

#include <quillmate/office/byte_source.h>
#include <quillmate/text/utf8.h>

#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

bool IsHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

std::string Utf8FromUtf16(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t at = 0; at < utf16.size(); ++at) {
    const char16_t unit = utf16[at];
    if (IsHighSurrogate(unit) && at + 1 < utf16.size() && IsLowSurrogate(utf16[at + 1])) {
      text::AppendUtf8(utf8, 0x10000 + ((unit - 0xD800U) << 10) + (utf16[++at] - 0xDC00U));
    } else {
      text::AppendUtf8(utf8, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? text::kReplacementCharacter : unit);
    }
  }
  return utf8;
}

std::string Utf8FromUtf16Bytes(std::string_view bytes) {
  std::u16string utf16;
  utf16.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
    utf16 += static_cast<char16_t>(LittleEndian<std::uint16_t>(bytes, at));
  return Utf8FromUtf16(utf16);
}

std::string UpperCaseName(std::string_view utf8) {
  std::string upper;
  upper.reserve(utf8.size());
  while (!utf8.empty()) {
    const text::Utf8Character read = text::ReadUtf8(utf8);
    text::AppendUtf8(upper, read.length == 0 ? text::kReplacementCharacter : UpperCaseCharacter(read.character));
    utf8.remove_prefix(std::max<std::size_t>(read.length, 1));
  }
  return upper;
}

}  // namespace quillmate::office
