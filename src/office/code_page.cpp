#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

#include "code_page_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr int kWindows1252 = 1252;
constexpr int kUtf8 = 65001;

bool IsOurOwn(int number) { return number == kUtf8 || number == kWindows1252 || number == 0; }

}  // namespace

CodePage::CodePage(int number)
    : isUtf8_(number == kUtf8), isOurOwn_(IsOurOwn(number)), converter_(IsOurOwn(number) ? nullptr : Open(number)) {}

files::DecodedText CodePage::Decode(std::string_view bytes) const {
  files::DecodedText text;
  if (isUtf8_) {
    text.code = text::CodeFromUtf8(bytes, &text.replaced);
    if (text.replaced > 0) text.original = text::WellFormedUtf8(bytes);
  } else if (converter_ == nullptr) {
    text.code = bytes;
  } else {
    const std::u16string utf16 = Utf16From(bytes);
    text.code = text::CodeFromUtf16(utf16, &text.replaced);
    if (text.replaced > 0) text.original = text::Utf8FromUtf16(utf16);
  }
  return text;
}

std::string CodePage::Utf8From(std::string_view bytes) const {
  if (isUtf8_) return text::WellFormedUtf8(bytes);
  return converter_ == nullptr ? text::Utf8FromCode(bytes) : text::Utf8FromUtf16(Utf16From(bytes));
}

}  // namespace quillmate::office
