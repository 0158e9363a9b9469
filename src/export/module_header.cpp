#include <algorithm>
#include <iterator>

#include <quillmate/export/module_header.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::output {
namespace {

struct KindText {
  std::string_view imageKey;
  std::string_view typeLine;
};

constexpr KindText kKinds[] = {
    {"M1", "Typ = Userform"},
    {"M2", "Typ = Allgemeines Modul"},
    {"M3", "Typ = Klassenmodul"},
    {"M5", "Typ = Element der Mappe(Sheet, Workbook, ...)"},
};

constexpr std::string_view kNamePlace = "xxxxx";
constexpr std::string_view kTypePlace = "yyyyy";
constexpr std::size_t kStars = 62;

std::string HeaderTemplate() {
  const std::string stars = "' " + std::string(kStars, '*');
  std::string block(text::HeaderLineOpen);
  block += text::CommentOpen;
  block += stars + "\r\n'  Modul:  xxxxx  yyyyy\r\n" + stars;
  block += text::SpanClose;
  block += text::HeaderLineClose;
  return block;
}

}  // namespace

std::string_view TypeLine(std::string_view imageKey) {
  const auto* kind =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&](const KindText& k) { return k.imageKey == imageKey; });
  return kind == std::end(kKinds) ? std::string_view{} : kind->typeLine;
}

std::string MakeModuleHeaderWithType(std::string_view moduleName, std::string_view typeLine) {
  return text::ReplaceAll(text::ReplaceAll(HeaderTemplate(), kNamePlace, moduleName), kTypePlace, typeLine);
}

std::string MakeModuleHeader(std::string_view moduleName, std::string_view imageKey) {
  return MakeModuleHeaderWithType(moduleName, TypeLine(imageKey));
}

std::string HeaderBlockWithType(std::string_view moduleName, std::string_view typeLine) {
  return "\r\n\r\n" + MakeModuleHeaderWithType(moduleName, typeLine) + "\r\n\r\n";
}

std::string HeaderBlock(std::string_view moduleName, std::string_view imageKey) {
  return HeaderBlockWithType(moduleName, TypeLine(imageKey));
}

}  // namespace quillmate::output
