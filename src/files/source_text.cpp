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

DecodedText FromUtf8(std::string_view utf8) {
  DecodedText text;
  text.code = text::CodeFromUtf8(utf8, &text.replaced);
  if (text.replaced > 0) text.original = text::WellFormedUtf8(utf8);
  return text;
}

DecodedText FromUtf16(const std::u16string& utf16) {
  DecodedText text;
  text.code = text::CodeFromUtf16(utf16, &text.replaced);
  if (text.replaced > 0) text.original = text::Utf8FromUtf16(utf16);
  return text;
}

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

DecodedText DecodeBytes(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return FromUtf8(bytes.substr(kUtf8Mark.size()));
  if (bytes.starts_with(kLittleEndianMark)) return FromUtf16(Utf16FromBytes(bytes.substr(2), false));
  if (bytes.starts_with(kBigEndianMark)) return FromUtf16(Utf16FromBytes(bytes.substr(2), true));
  if (!IsSingleByteText(bytes)) return FromUtf8(bytes);
  return {std::string(bytes), 0, {}};
}

}  // namespace

bool IsSingleByteText(std::string_view bytes) noexcept {
  for (const std::string_view mark : {kUtf8Mark, kLittleEndianMark, kBigEndianMark}) {
    if (bytes.starts_with(mark)) return false;
  }
  return text::IsAscii(bytes) || !text::IsValidUtf8(bytes);
}

DecodedText DecodeWithOriginal(std::string_view bytes) {
  DecodedText text = DecodeBytes(bytes);
  text.code = text::NormalizeLineBreaks(text.code);
  text.original = text::NormalizeLineBreaks(text.original);
  return text;
}

std::string DecodeSourceText(std::string_view bytes) { return DecodeWithOriginal(bytes).code; }

}  // namespace quillmate::files
