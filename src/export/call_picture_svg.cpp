#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include <quillmate/export/call_picture_svg.h>
#include <quillmate/text/utf8.h>

#include "site_text_p.h"

namespace quillmate::output {
namespace {

using symbols::PictureEdge;
using symbols::PictureNode;

constexpr double kTitleLine = 16;
constexpr double kPlaceLine = 30;
constexpr double kOnlyLine = 23;

/// With one decimal at most, always with a point.
std::string Number(double value) {
  std::array<char, 32> text{};
  const double rounded = std::round(value * 10) / 10;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), rounded).ptr;
  return {text.data(), end};
}

/// As much of a text as a node has room for.
std::string Cut(std::string_view text, double width, bool bold) {
  // What was measured to fit may lack a trifle when it is measured again.
  width += 0.1;
  if (symbols::EstimateTextWidth(text, bold) <= width) return std::string(text);
  constexpr std::string_view kRest = "…";
  double left = width - symbols::EstimateTextWidth(kRest, bold);
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t length = std::max<std::size_t>(1, text::ReadUtf8(text.substr(end)).length);
    left -= symbols::EstimateTextWidth(text.substr(end, length), bold);
    if (left < 0) break;
    end += length;
  }
  return std::string(text.substr(0, end)).append(kRest);
}

std::string_view ClassOf(const PictureNode& node) {
  if (node.kind == PictureNode::Kind::kMore) return "more";
  if (node.kind == PictureNode::Kind::kOutside) return "outside";
  return node.level == 0 ? "root" : node.isEntry ? "entry" : "routine";
}

class Writer {
 public:
  Writer(const symbols::CallPicture& picture, const CallPictureSvgOptions& options)
      : picture_(picture), options_(options) {}

  std::string Write() {
    Head();
    for (const PictureEdge& edge : picture_.edges) Edge(edge);
    for (const PictureNode& node : picture_.nodes) Node(node);
    return svg_.append("</svg>\n");
  }

 private:
  void Head() {
    if (options_.standAlone) svg_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const std::string width = Number(picture_.width), height = Number(picture_.height);
    svg_ += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"calls\" role=\"img\" width=\"" + width + "\" height=\"" +
            height + "\" viewBox=\"0 0 " + width + " " + height + "\">\n";
    if (!options_.title.empty()) svg_ += "<title>" + EscapeUtf8(options_.title) + "</title>\n";
    if (!options_.standAlone) return;
    svg_.append("<style>").append(kCallPictureStyle).append("</style>\n");
    svg_ += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
  }

  void Edge(const PictureEdge& edge) {
    const PictureNode& from = picture_.nodes[edge.from];
    const PictureNode& to = picture_.nodes[edge.to];
    const double x1 = from.x + from.width, y1 = from.y + from.height / 2;
    const double x2 = to.x, y2 = to.y + to.height / 2;
    const double bend = symbols::PictureBend(from, to);
    const bool isSure = edge.certainty == symbols::Certainty::kSure || edge.certainty == symbols::Certainty::kHost;
    svg_.append("<path class=\"edge").append(isSure ? "" : " possible").append(edge.isCycle ? " cycle" : "");
    svg_ += "\" d=\"M" + Number(x1) + " " + Number(y1) + " C" + Number(x1 + bend) + " " + Number(y1) + " " +
            Number(x2 - bend) + " " + Number(y2) + " " + Number(x2) + " " + Number(y2) + "\"/>";
    svg_.append("<path class=\"head").append(edge.isCycle ? " cycle" : "");
    svg_ += "\" d=\"M" + Number(x2) + " " + Number(y2) + "l-7 -3.5v7z\"/>\n";
  }

  void Text(const PictureNode& node, double line, std::string_view text, bool bold) {
    const std::string shown = Cut(text, node.width - 2 * symbols::kPictureTextMargin, bold);
    svg_ += "<text class=\"" + std::string(bold ? "title" : "place") + "\" x=\"" +
            Number(node.x + symbols::kPictureTextMargin) + "\" y=\"" + Number(node.y + line) + "\">" +
            EscapeUtf8(shown) + "</text>";
  }

  void Node(const PictureNode& node) {
    const std::string link = options_.link ? options_.link(node) : std::string();
    if (!link.empty()) svg_ += "<a href=\"" + EscapeUtf8(link) + "\">";
    svg_.append("<g class=\"").append(ClassOf(node)).append(node.isCycle ? " cycle" : "");
    svg_ += "\"><rect x=\"" + Number(node.x) + "\" y=\"" + Number(node.y) + "\" width=\"" + Number(node.width) +
            "\" height=\"" + Number(node.height) + "\" rx=\"4\"/>";
    const std::string title = node.isCycle ? node.title + " ↻" : node.title;
    Text(node, node.place.empty() ? kOnlyLine : kTitleLine, title, true);
    if (!node.place.empty()) Text(node, kPlaceLine, node.place, false);
    svg_ += link.empty() ? "</g>\n" : "</g></a>\n";
  }

  const symbols::CallPicture& picture_;
  const CallPictureSvgOptions& options_;
  std::string svg_;
};

}  // namespace

const std::string_view kCallPictureStyle =
    ".calls text{font-family:\"Segoe UI\",\"DejaVu Sans\",Arial,sans-serif;font-size:12px;fill:#1b1b1b}"
    ".calls .title{font-weight:600}.calls .place{fill:#555555;font-size:11px}"
    ".calls rect{fill:#ffffff;stroke:#8a94a6}.calls .root rect{fill:#d7e6fb;stroke:#1f5fae;stroke-width:2}"
    ".calls .entry rect{fill:#e4f3e3;stroke:#3b7d3a}.calls .outside rect{fill:#fdf1d4;stroke:#9a6b00}"
    ".calls .more rect{stroke-dasharray:4 3}.calls .cycle rect{stroke:#b3261e}"
    ".calls .edge{fill:none;stroke:#6b7688;stroke-width:1.3}.calls .possible{stroke-dasharray:5 4}"
    ".calls .edge.cycle{stroke:#b3261e}.calls .head{fill:#6b7688}.calls .head.cycle{fill:#b3261e}.calls a:hover "
    "rect{stroke-width:2}";

std::string CallPictureSvg(const symbols::CallPicture& picture, const CallPictureSvgOptions& options) {
  return Writer(picture, options).Write();
}

}  // namespace quillmate::output
