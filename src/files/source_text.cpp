#include <algorithm>

#include <quillmate/files/source_text.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::files {
namespace {

std::u16string Utf16FromBytes(std::string_view bytes, bool bigEndian) {
  std::u16string out;
  out.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    out += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return out;
}

bool HasMultiByte(std::string_view bytes) noexcept {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string DecodeBytes(std::string_view bytes) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
  constexpr std::string_view kBigEndianMark = "\xFE\xFF";
  if (bytes.starts_with(kUtf8Mark)) return text::CodeFromUtf8(bytes.substr(kUtf8Mark.size()));
  if (bytes.starts_with(kLittleEndianMark)) return text::CodeFromUtf16(Utf16FromBytes(bytes.substr(2), false));
  if (bytes.starts_with(kBigEndianMark)) return text::CodeFromUtf16(Utf16FromBytes(bytes.substr(2), true));
  if (HasMultiByte(bytes) && text::IsValidUtf8(bytes)) return text::CodeFromUtf8(bytes);
  return std::string(bytes);
}

}  // namespace

std::string DecodeSourceText(std::string_view bytes) { return text::NormalizeLineBreaks(DecodeBytes(bytes)); }

}  // namespace quillmate::files
