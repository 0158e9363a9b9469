#include <quillmate/export/html.h>
#include <quillmate/export/module_header.h>

#include "markup_p.h"
#include "text_work_p.h"

namespace quillmate::output {
namespace {

using text::Marker;

constexpr std::string_view kHtmlEnd = "</span></pre>";

struct Entity {
  char character;
  std::string_view text;
};

/// None of the texts holds a character that is replaced after it, so that their order does not matter.
constexpr Entity kEntities[] = {
    {'&', "&#38;"},     {'<', "&lt;"},      {'>', "&gt;"},      {'\344', "&auml;"}, {'\366', "&ouml;"},
    {'\374', "&uuml;"}, {'\304', "&Auml;"}, {'\326', "&Ouml;"}, {'\334', "&Uuml;"}, {'\337', "&szlig;"},
    {'"', "&#34;"},     {':', "&#58;"},     {')', "&#41;"},     {'(', "&#40;"},     {'+', "&#43;"},
};

constexpr ByteSlots MakeBytes() noexcept {
  ByteSlots bytes = PlainBytes();
  for (const Entity& entity : kEntities) bytes[static_cast<unsigned char>(entity.character)].Set(entity.text);
  return bytes;
}

constexpr ByteSlots kBytes = MakeBytes();

/// Upper case, at least two digits.
std::string Hex(std::int32_t part) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (auto rest = static_cast<std::uint32_t>(part); rest != 0 || digits.size() < 2; rest /= 16) {
    digits.insert(digits.begin(), kDigits[rest % 16]);
  }
  return digits;
}

std::string ColourSpan(std::int32_t colour) { return "<span style=\"color:" + ColourToHex(colour) + "\"; >"; }

Markup HtmlMarkup(const text::CodeLook& look) {
  Markup markup{.bytes = kBytes, .tags = {}, .lineFeed = {}, .headersVanish = !look.boldRoutines};
  const auto set = [&](Marker marker, std::string_view tag) { markup.tags[static_cast<std::size_t>(marker)].Set(tag); };
  set(Marker::kSpanClose, "</span>");
  set(Marker::kCommentOpen, ColourSpan(look.commentColour));
  set(Marker::kKeywordOpen, ColourSpan(look.keywordColour));
  set(Marker::kStringOpen, ColourSpan(look.stringColour));
  set(Marker::kHeaderLineOpen, look.boldRoutines ? "<b>" : "");
  set(Marker::kHeaderLineClose, look.boldRoutines ? "</b>" : "");
  return markup;
}

std::string HtmlHead(const text::CodeLook& look) {
  return "<pre><span style=\"font-family=" + look.fontName + ",Arial; font-size=" + std::to_string(look.fontSize) +
         "pt\"; >";
}

}  // namespace

std::string EscapeHtml(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size() + text.size() / 2);
  for (const char c : text) {
    const auto& slot = kBytes[static_cast<unsigned char>(c)];
    escaped.append(slot.text, slot.length);
  }
  return escaped;
}

std::string ColourToHex(std::int32_t colour) {
  const std::int32_t low = colour % 65536;
  return "#" + Hex(low % 256) + Hex(low / 256) + Hex(colour / 65536);
}

void BuildHtml(std::string_view markedText, const text::CodeLook& look, const Sink& sink) {
  sink(HtmlHead(look));
  WriteMarkup(markedText, HtmlMarkup(look), sink);
  sink(kHtmlEnd);
}

std::string BuildHtml(std::string_view markedText, const text::CodeLook& look) {
  std::string html;
  html.reserve(markedText.size() * 2);
  BuildHtml(markedText, look, [&](std::string_view piece) { html.append(piece); });
  return html;
}

std::string CreditLine(std::string_view hostName) {
  std::string line =
      "<span style=\" font-weight:bold;\"> Code eingef&uuml;gt mit: </span> "
      "<a style =\"color:#ffff00; background-color:#000080; font-weight:bold;\" "
      "href=\"\" target=\"blank\">";
  return line.append(hostName).append(" Quillmate</a>");
}

std::string AppendCredit(std::string html, std::string_view hostName) {
  return html.append("\r\n<br>").append(CreditLine(hostName));
}

std::string PreviewDocument(std::string_view html, std::string_view hostName) {
  std::string page = "<HTML><HEAD><TITLE>";
  page.append(hostName).append(" Quillmate</TITLE></HEAD><BODY>").append(html);
  return page.append("</Body></HTML>\r\n");
}

std::string_view HtmlTypeLine(std::string_view imageKey) { return imageKey == "M5" ? imageKey : TypeLine(imageKey); }

void ModuleHtml(const std::filesystem::path& folder, codedb::ModuleNumber module, const text::CodeLook& look,
                const Sink& sink) {
  ProjectHtml(folder, {{module, {}, {}}}, false, look, sink);
}

void ProjectHtml(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                 const text::CodeLook& look, const Sink& sink) {
  const std::string head = HtmlHead(look);
  const Markup markup = HtmlMarkup(look);
  TextWork work([&](std::string_view text, const Sink& to) { WriteMarkup(text, markup, to); }, sink);
  for (const ModuleEntry& module : modules) {
    work.AddBytes(head);
    // The block ends at a line's end, so that it can be turned into HTML by itself.
    if (headers) work.AddShortText(HeaderBlockWithType(module.name, HtmlTypeLine(module.imageKey)));
    work.AddModule(folder, module.number);
    work.AddBytes(kHtmlEnd);
  }
  work.Finish();
}

}  // namespace quillmate::output
