#include <quillmate/export/rtf.h>
#include <quillmate/text/operations.h>

#include "markup_p.h"

namespace quillmate::output {
namespace {

using text::Marker;

constexpr std::string_view kFontTable =
    "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\fswiss MS Sans Serif;}\r\n"
    "{\\f1\\froman\\fcharset2 Symbol;}{\\f2\\fswiss MS Sans Serif;}{\\f3\\fswiss Arial;}{\\f4\\fswiss\\fprq2 System;}}"
    "\r\n";
constexpr std::string_view kFontPlace = "Arial";

std::string TabStops(int millimetres) {
  const auto twips = static_cast<long long>(millimetres / 10.0 * 567);
  std::string stops;
  for (int k = 1; k <= 10; ++k) stops += "\\tx" + std::to_string(twips * k);
  return stops;
}

constexpr ByteSlots MakeBytes() noexcept {
  ByteSlots bytes = PlainBytes();
  bytes['\\'].Set("\\\\");
  bytes['{'].Set("\\{");
  bytes['}'].Set("\\}");
  bytes['\t'].Set("\\tab ");
  return bytes;
}

constexpr ByteSlots kBytes = MakeBytes();

Markup RtfMarkup(bool boldRoutines) {
  Markup markup{.bytes = kBytes, .tags = {}, .lineFeed = "\n\\par ", .headersVanish = !boldRoutines};
  const auto set = [&](Marker marker, std::string_view tag) { markup.tags[static_cast<std::size_t>(marker)].Set(tag); };
  set(Marker::kSpanClose, "\\cf0 ");
  set(Marker::kCommentOpen, "\\cf2 ");
  set(Marker::kKeywordOpen, "\\cf1 ");
  set(Marker::kStringOpen, "\\cf3 ");
  set(Marker::kHeaderLineOpen, boldRoutines ? "\\b " : "");
  set(Marker::kHeaderLineClose, boldRoutines ? "\\b0 " : "");
  return markup;
}

}  // namespace

void ColourBody(std::string_view markedText, bool boldRoutines, const Sink& sink) {
  WriteMarkup(markedText, RtfMarkup(boldRoutines), sink);
}

std::string ColourBody(std::string_view markedText, bool boldRoutines) {
  std::string body;
  body.reserve(markedText.size() + markedText.size() / 4);
  ColourBody(markedText, boldRoutines, [&](std::string_view piece) { body.append(piece); });
  return body;
}

std::string ColourEntry(std::int32_t colour) {
  return "\\red" + std::to_string(colour % 256) + "\\green" + std::to_string(colour / 256 % 256) + "\\blue" +
         std::to_string(colour / 65536) + ";";
}

std::string DocumentHead(const text::CodeLook& look) {
  std::string head = text::ReplaceAll(kFontTable, kFontPlace, look.fontName);
  head += "{\\colortbl\\red0\\green0\\blue0;";
  head += ColourEntry(look.keywordColour) + ColourEntry(look.commentColour) + ColourEntry(look.stringColour);
  head += "}";
  head += text::kLineBreak;
  head += "\\deflang1031\\pard\\li105" + TabStops(look.tabWidth);
  head += "\\plain\\f3\\fs" + std::to_string(2LL * look.fontSize) + " ";
  return head;
}

std::string WrapDocument(std::string_view body, const text::CodeLook& look) {
  return DocumentHead(look).append(body).append(kDocumentEnd);
}

std::string RtfDocument(std::string_view markedText, const text::CodeLook& look) {
  return WrapDocument(ColourBody(markedText, look.boldRoutines), look);
}

}  // namespace quillmate::output
