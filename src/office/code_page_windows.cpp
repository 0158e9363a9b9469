#include <limits>

#include <windows.h>

#include "code_page_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
/// True for what may be the second byte of a pair. Any other stands for itself and is not swallowed by a first byte
/// that it does not go with.
bool IsTrail(unsigned char byte) noexcept { return byte >= 0x40 && byte != 0x7F && byte != 0xFF; }

/// Nothing when some bytes mean nothing and the flags don't let the system replace them.
std::u16string Converted(UINT number, DWORD flags, std::string_view bytes) {
  if (bytes.empty()) return {};
  const int size = static_cast<int>(bytes.size());
  // No code page makes more units than it has bytes, but for rare characters of two units.
  std::wstring wide(bytes.size(), L'\0');
  int length = MultiByteToWideChar(number, flags, bytes.data(), size, wide.data(), size);
  if (length == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(number, flags, bytes.data(), size, nullptr, 0)));
    length = MultiByteToWideChar(number, flags, bytes.data(), size, wide.data(), static_cast<int>(wide.size()));
  }
  return {wide.begin(), wide.begin() + length};
}

/// Character by character, for a text with bytes that mean nothing: what the system puts in their place differs from
/// code page to code page.
std::u16string ConvertedOneByOne(UINT number, std::string_view bytes) {
  std::u16string utf16;
  utf16.reserve(bytes.size());
  while (!bytes.empty()) {
    const bool pair = bytes.size() > 1 && IsDBCSLeadByteEx(number, static_cast<BYTE>(bytes[0])) != FALSE &&
                      IsTrail(static_cast<unsigned char>(bytes[1]));
    const std::size_t length = pair ? 2 : 1;
    const std::u16string character = Converted(number, MB_ERR_INVALID_CHARS, bytes.substr(0, length));
    utf16 += character.empty() ? std::u16string(1, kReplacement) : character;
    bytes.remove_prefix(length);
  }
  return utf16;
}

}  // namespace

struct CodePage::Converter {
  UINT number;
  /// At most two bytes make a character.
  bool narrow;
};

void CodePage::Close::operator()(Converter* converter) const noexcept { delete converter; }

CodePage::Converter* CodePage::Open(int number) {
  CPINFO info{};
  const auto known = static_cast<UINT>(number);
  if (number < 0 || !IsValidCodePage(known) || !GetCPInfo(known, &info)) return nullptr;
  return new Converter{known, info.MaxCharSize <= 2};
}

std::u16string CodePage::Utf16From(std::string_view bytes) const {
  // A text that fills the system's counter is no text.
  bytes = bytes.substr(0, std::numeric_limits<int>::max() / 4);
  // The wide ones replace what they can't read by U+FFFD and know no other way.
  if (!converter_->narrow) return Converted(converter_->number, 0, bytes);
  const std::u16string all = Converted(converter_->number, MB_ERR_INVALID_CHARS, bytes);
  return all.empty() ? ConvertedOneByOne(converter_->number, bytes) : all;
}

char32_t UpperCaseCharacter(char32_t character) {
  // The system changes units, none of those beyond the first plane.
  if (character > 0xFFFF) return character;
  const auto unit = static_cast<wchar_t>(character);
  wchar_t upper = unit;
  const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &unit, 1, &upper, 1, nullptr, nullptr, 0);
  return length == 1 ? upper : character;
}

}  // namespace quillmate::office
