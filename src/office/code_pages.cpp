#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include <quillmate/office/code_pages.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "code_page_p.h"

namespace quillmate::office {
namespace {

struct Name {
  std::string_view name;
  int number;
};
constexpr std::array kNames{
    Name{"gbk", 936},       Name{"gb2312", 936},      Name{"gb18030", 54936},  Name{"big5", 950},
    Name{"shift_jis", 932}, Name{"shift-jis", 932},   Name{"sjis", 932},       Name{"euc-kr", 949},
    Name{"uhc", 949},       Name{"johab", 1361},      Name{"koi8-r", 20866},   Name{"koi8-u", 21866},
    Name{"tis-620", 874},   Name{"macintosh", 10000}, Name{"us-ascii", 20127}, Name{"latin1", 28591}};

/// What may precede a number, and what to add to it.
constexpr std::array kPrefixes{Name{"windows-", 0},      Name{"windows", 0},      Name{"cp", 0}, Name{"ibm", 0},
                               Name{"iso-8859-", 28590}, Name{"iso8859-", 28590}, Name{"", 0}};

std::optional<int> NumberOf(std::string_view name) {
  const auto* known =
      std::ranges::find_if(kNames, [&](const Name& row) { return text::EqualsIgnoreCase(row.name, name); });
  if (known != kNames.end()) return known->number;
  for (const auto& [prefix, base] : kPrefixes) {
    if (!text::StartsWithIgnoreCase(name, prefix)) continue;
    const std::string_view digits = name.substr(prefix.size());
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc() && end == digits.data() + digits.size() && number > 0) return base + number;
  }
  return std::nullopt;
}

bool TellsItsEncoding(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF") || bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  return text::IsAscii(bytes) || text::IsValidUtf8(bytes);
}

}  // namespace

std::optional<int> FindCodePage(std::string_view name) {
  const std::optional<int> number = NumberOf(name);
  return number && CodePage(*number).IsKnown() ? number : std::nullopt;
}

std::string DecodeModuleBytes(std::string bytes, int codePage) {
  if (codePage == 0 || TellsItsEncoding(bytes)) return bytes;
  return "\xEF\xBB\xBF" + CodePage(codePage).Utf8From(bytes);
}

}  // namespace quillmate::office
