#include <algorithm>
#include <array>
#include <limits>

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include "code_page_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

struct Alias {
  int number;
  const char* name;
};
/// Numbers that the converters don't know under "windows-" and "cp".
constexpr std::array kAliases{Alias{10000, "macintosh"},     Alias{10001, "Shift_JIS"},
                              Alias{10002, "Big5"},          Alias{10003, "EUC-KR"},
                              Alias{10006, "x-mac-greek"},   Alias{10007, "x-mac-cyrillic"},
                              Alias{10008, "GB2312"},        Alias{10029, "x-mac-centraleurroman"},
                              Alias{10081, "x-mac-turkish"}, Alias{20127, "US-ASCII"},
                              Alias{20866, "KOI8-R"},        Alias{28591, "ISO-8859-1"},
                              Alias{28592, "ISO-8859-2"},    Alias{54936, "GB18030"},
                              Alias{21866, "KOI8-U"}};

/// The library's own way puts a control character into some code pages.
void Replace(const void*, UConverterToUnicodeArgs* arguments, const char*, std::int32_t,
             UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;
  constexpr UChar kReplacement = 0xFFFD;
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &kReplacement, 1, 0, error);
}

UConverter* OpenNamed(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(name.c_str(), &error);
  if (U_FAILURE(error)) return nullptr;
  ucnv_setToUCallBack(converter, Replace, nullptr, nullptr, nullptr, &error);
  return converter;
}

UConverter* OpenNumber(int number) {
  const auto* alias =
      std::find_if(kAliases.begin(), kAliases.end(), [=](const Alias& entry) { return entry.number == number; });
  if (alias != kAliases.end()) return OpenNamed(alias->name);
  constexpr int kIso = 28590;
  if (number > kIso && number <= kIso + 16) return OpenNamed("ISO-8859-" + std::to_string(number - kIso));
  UConverter* converter = OpenNamed("windows-" + std::to_string(number));
  return converter != nullptr ? converter : OpenNamed("cp" + std::to_string(number));
}

}  // namespace

/// The library's own converter in the shape that the class keeps.
struct CodePage::Converter {
  UConverter* library;
};

void CodePage::Close::operator()(Converter* converter) const noexcept {
  ucnv_close(converter->library);
  delete converter;
}

CodePage::Converter* CodePage::Open(int number) {
  UConverter* const library = OpenNumber(number);
  return library == nullptr ? nullptr : new Converter{library};
}

std::u16string CodePage::Utf16From(std::string_view bytes) const {
  // A text that fills the converter's counter is no text.
  bytes = bytes.substr(0, std::numeric_limits<std::int32_t>::max() / 4);
  const auto convert = [&](std::u16string& utf16) {
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        ucnv_toUChars(converter_->library, utf16.data(), static_cast<std::int32_t>(utf16.size()), bytes.data(),
                      static_cast<std::int32_t>(bytes.size()), &error);
    return U_SUCCESS(error) || error == U_BUFFER_OVERFLOW_ERROR ? static_cast<std::size_t>(length) : 0;
  };
  // Hardly any code page has a byte that is more than one unit.
  std::u16string utf16(bytes.size() + 1, u'\0');
  const std::size_t length = convert(utf16);
  if (length > utf16.size()) {
    utf16.resize(length);
    convert(utf16);
  }
  utf16.resize(length);
  return utf16;
}

char32_t UpperCaseCharacter(char32_t character) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
}

}  // namespace quillmate::office
