#include <algorithm>

#include <quillmate/text/source_text.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::text {
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
  if (bytes.starts_with(kUtf8Mark)) return CodeFromUtf8(bytes.substr(kUtf8Mark.size()));
  if (bytes.starts_with(kLittleEndianMark)) return CodeFromUtf16(Utf16FromBytes(bytes.substr(2), false));
  if (bytes.starts_with(kBigEndianMark)) return CodeFromUtf16(Utf16FromBytes(bytes.substr(2), true));
  if (HasMultiByte(bytes) && IsValidUtf8(bytes)) return CodeFromUtf8(bytes);
  return std::string(bytes);
}

}  // namespace

std::string NormalizeLineBreaks(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  std::size_t start = 0;
  while (start < text.size()) {
    const auto* found = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(),
                                     [](char c) { return c == '\r' || c == '\n'; });
    const auto end = static_cast<std::size_t>(found - text.begin());
    out.append(text, start, end - start);
    if (end == text.size()) break;
    out += "\r\n";
    const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    start = end + (pair ? 2 : 1);
  }
  return out;
}

std::string DecodeSourceText(std::string_view bytes) { return NormalizeLineBreaks(DecodeBytes(bytes)); }

}  // namespace quillmate::text
