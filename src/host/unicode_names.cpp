#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <quillmate/host/byte_source.h>

#include "unicode_names_p.h"

namespace quillmate::host {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

void Append(std::string& utf8, UChar32 character) {
  char bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  utf8.append(bytes, length);
}

}  // namespace

std::string Utf8FromUtf16(std::u16string_view utf16) {
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t at = 0; at < utf16.size();) {
    UChar32 character = 0;
    U16_NEXT(utf16.data(), at, utf16.size(), character);
    Append(utf8, U_IS_SURROGATE(character) ? kReplacement : character);
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
  // A name never has more UTF-16 units than bytes.
  std::u16string utf16(utf8.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  const auto size = static_cast<std::int32_t>(utf8.size());
  u_strFromUTF8WithSub(utf16.data(), size, &length, utf8.data(), size, kReplacement, nullptr, &error);
  if (U_FAILURE(error)) return std::string(utf8);
  std::string upper;
  upper.reserve(utf8.size());
  for (std::int32_t at = 0; at < length;) {
    UChar32 character = 0;
    U16_NEXT(utf16.data(), at, length, character);
    Append(upper, u_toupper(character));
  }
  return upper;
}

}  // namespace quillmate::host
