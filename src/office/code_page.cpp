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

CodePage::CodePage(int number) : isUtf8_(number == kUtf8), converter_(IsOurOwn(number) ? nullptr : Open(number)) {}

std::string CodePage::CodeFrom(std::string_view bytes) const {
  if (isUtf8_) return text::CodeFromUtf8(bytes);
  return converter_ == nullptr ? std::string(bytes) : text::CodeFromUtf16(Utf16From(bytes));
}

std::string CodePage::Utf8From(std::string_view bytes) const {
  if (isUtf8_) return text::WellFormedUtf8(bytes);
  return converter_ == nullptr ? text::Utf8FromCode(bytes) : Utf8FromUtf16(Utf16From(bytes));
}

}  // namespace quillmate::office
