#include "code_colours.h"

#include <algorithm>
#include <cmath>

namespace quillmate::ui {
namespace {

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

CodeColours LightColours(const QColor& keyword, const QColor& comment, const QColor& string) {
  return {.paper = Qt::white,
          .ink = Qt::black,
          .keyword = keyword,
          .comment = comment,
          .string = string,
          .selection = QColor(0x9c, 0xc8, 0xf5),
          .selectedInk = Qt::black,
          .occurrence = QColor(0xff, 0xe9, 0xa8),
          .link = QColor(0x00, 0x40, 0xc0),
          .margin = QColor(0xf2, 0xf2, 0xf2),
          .number = QColor(0x6a, 0x6a, 0x6a),
          .caretNumber = QColor(0x20, 0x20, 0x20),
          .sign = QColor(0x1f, 0x4e, 0x9a),
          .note = QColor(0x7a, 0x3e, 0x00)};
}

CodeColours DarkColours() {
  return {.paper = QColor(0x1e, 0x1e, 0x1e),
          .ink = QColor(0xe8, 0xe8, 0xe8),
          .keyword = QColor(0x9c, 0xc8, 0xff),
          .comment = QColor(0x93, 0xd6, 0x93),
          .string = QColor(0xff, 0xbc, 0x8a),
          .selection = QColor(0x1d, 0x4f, 0x86),
          .selectedInk = Qt::white,
          .occurrence = QColor(0x45, 0x3c, 0x12),
          .link = QColor(0xa8, 0xd0, 0xff),
          .margin = QColor(0x29, 0x29, 0x29),
          .number = QColor(0xa6, 0xa6, 0xa6),
          .caretNumber = QColor(0xf0, 0xf0, 0xf0),
          .sign = QColor(0x8a, 0xb8, 0xff),
          .note = QColor(0xf0, 0xc8, 0x6a)};
}

QPalette PaperPalette(QPalette palette, const CodeColours& colours) {
  palette.setColor(QPalette::Base, colours.paper);
  palette.setColor(QPalette::Text, colours.ink);
  palette.setColor(QPalette::PlaceholderText, colours.number);
  palette.setColor(QPalette::Highlight, colours.selection);
  palette.setColor(QPalette::HighlightedText, colours.selectedInk);
  return palette;
}

double ContrastOf(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

}  // namespace quillmate::ui
