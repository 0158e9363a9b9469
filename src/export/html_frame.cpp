#include <quillmate/codedb/index_files.h>
#include <quillmate/export/html.h>
#include <quillmate/export/module_header.h>

#include "html_frame_p.h"

namespace quillmate::output {
namespace {

/// Upper case, at least two digits.
std::string Hex(std::int32_t part) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (auto rest = static_cast<std::uint32_t>(part); rest != 0 || digits.size() < 2; rest /= 16) {
    digits.insert(digits.begin(), kDigits[rest % 16]);
  }
  return digits;
}

}  // namespace

std::string ColourToHex(std::int32_t colour) {
  const std::int32_t low = colour % 65536;
  return "#" + Hex(low % 256) + Hex(low / 256) + Hex(colour / 65536);
}

std::string HtmlHead(const HtmlOptions& options) {
  return "<pre><span style=\"font-family=" + options.fontName +
         ",Arial; font-size=" + std::to_string(options.fontSize) + "pt\"; >";
}

std::string CreditLine(std::string_view hostName) {
  std::string line =
      "<span style=\" font-weight:bold;\"> Code eingef&uuml;gt mit: </span> "
      "<a style =\"color:#ffff00; background-color:#000080; font-weight:bold;\" "
      "href=\"https://quillmate.example/\" target=\"blank\">";
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

void ModuleHtml(const std::filesystem::path& folder, int moduleNumber, const HtmlOptions& options, const Sink& sink) {
  BuildHtml(codedb::ReadModuleText(folder, moduleNumber), options, sink);
}

void ProjectHtml(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                 const HtmlOptions& options, const Sink& sink) {
  const std::string head = HtmlHead(options);
  for (const ModuleEntry& module : modules) {
    sink(head);
    // The block ends at a line's end, so that it can be turned into HTML by itself.
    if (headers) HtmlBody(HeaderBlockWithType(module.name, HtmlTypeLine(module.imageKey)), options, sink);
    HtmlBody(codedb::ReadModuleText(folder, module.number), options, sink);
    sink(kHtmlEnd);
  }
}

}  // namespace quillmate::output
