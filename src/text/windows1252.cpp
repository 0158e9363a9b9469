#include <algorithm>
#include <array>
#include <cstring>

#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::text {
namespace {

constexpr std::array<char16_t, 32> kUpperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                     0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Length of the run of ASCII bytes at the start.
std::size_t AsciiRun(std::string_view bytes) noexcept {
  std::size_t i = 0;
  while (i + 8 <= bytes.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + i, 8);
    if ((word & 0x8080808080808080ULL) != 0) break;
    i += 8;
  }
  while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) < 0x80) ++i;
  return i;
}

}  // namespace

char16_t ToUnicode(unsigned char code) noexcept {
  return code >= 0x80 && code < 0xA0 ? kUpperControls[code - 0x80] : static_cast<char16_t>(code);
}

std::optional<unsigned char> FromUnicode(char32_t character) noexcept {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<unsigned char>(character);
  const auto* found = std::find(kUpperControls.begin(), kUpperControls.end(), character);
  if (found == kUpperControls.end()) return std::nullopt;
  return static_cast<unsigned char>(0x80 + (found - kUpperControls.begin()));
}

std::string Utf8FromCode(std::string_view code) {
  std::string out;
  out.reserve(code.size() + code.size() / 16);
  while (!code.empty()) {
    const std::size_t ascii = AsciiRun(code);
    out.append(code.substr(0, ascii));
    code.remove_prefix(ascii);
    if (code.empty()) break;
    AppendUtf8(out, ToUnicode(static_cast<unsigned char>(code.front())));
    code.remove_prefix(1);
  }
  return out;
}

std::string CodeFromUtf8(std::string_view utf8, std::size_t* replaced) {
  std::string out;
  out.reserve(utf8.size());
  std::size_t lost = 0;
  while (!utf8.empty()) {
    const std::size_t ascii = AsciiRun(utf8);
    out.append(utf8.substr(0, ascii));
    utf8.remove_prefix(ascii);
    if (utf8.empty()) break;
    const Utf8Character sequence = ReadUtf8(utf8);
    const auto code = sequence.length == 0 ? std::nullopt : FromUnicode(sequence.character);
    if (!code) ++lost;
    out += static_cast<char>(code.value_or('?'));
    utf8.remove_prefix(std::max<std::size_t>(sequence.length, 1));
  }
  if (replaced != nullptr) *replaced = lost;
  return out;
}

std::size_t CountReplaced(std::string_view utf8) {
  std::size_t replaced = 0;
  CodeFromUtf8(utf8, &replaced);
  return replaced;
}

std::u16string Utf16FromCode(std::string_view code) {
  std::u16string out(code.size(), u'\0');
  std::transform(code.begin(), code.end(), out.begin(),
                 [](char c) { return ToUnicode(static_cast<unsigned char>(c)); });
  return out;
}

std::string CodeFromUtf16(std::u16string_view utf16, std::size_t* replaced) {
  std::string out;
  out.reserve(utf16.size());
  std::size_t lost = 0;
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    const char16_t c = utf16[i];
    const bool pair =
        c >= 0xD800 && c < 0xDC00 && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] < 0xE000;
    if (pair) ++i;
    const auto code = pair ? std::nullopt : FromUnicode(c);
    if (!code) ++lost;
    out += static_cast<char>(code.value_or('?'));
  }
  if (replaced != nullptr) *replaced = lost;
  return out;
}

bool IsValidUtf8(std::string_view bytes) noexcept {
  while (true) {
    bytes.remove_prefix(AsciiRun(bytes));
    if (bytes.empty()) return true;
    const Utf8Character sequence = ReadUtf8(bytes);
    if (sequence.length == 0) return false;
    bytes.remove_prefix(sequence.length);
  }
}

}  // namespace quillmate::text
