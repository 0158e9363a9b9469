#include <algorithm>

#include <quillmate/office/byte_source.h>
#include <quillmate/text/utf8.h>

#include "unicode_names_p.h"

namespace quillmate::office {

std::string Utf8FromUtf16Bytes(std::string_view bytes) {
  std::u16string utf16;
  utf16.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
    utf16 += static_cast<char16_t>(LittleEndian<std::uint16_t>(bytes, at));
  return text::Utf8FromUtf16(utf16);
}

std::string Utf8FromLatin1(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) text::AppendUtf8(utf8, static_cast<unsigned char>(c));
  return utf8;
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
