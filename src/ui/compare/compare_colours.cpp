#include "compare_colours.h"

#include <QPainter>
#include <QPixmap>
#include <array>

namespace quillmate::ui {
namespace {

using symbols::ChangeState;

QColor Rgb(unsigned value) { return QColor::fromRgb(value); }

CompareColours Light() {
  return {.ground = Rgb(0xffffff),
          .text = Rgb(0x1b1d21),
          .gone = Rgb(0xffecec),
          .goneWord = Rgb(0xffb9b9),
          .fresh = Rgb(0xe6f7e8),
          .freshWord = Rgb(0x9fe0a8),
          .filler = Rgb(0xf1f2f4),
          .soft = Rgb(0xf6f7f9),
          .heading = Rgb(0xe7ebf2),
          .dim = Rgb(0x5a606b),
          .frame = Rgb(0x8a93a3),
          .current = Rgb(0x0b57c2),
          .keyword = Rgb(0x0b3fb0),
          .string = Rgb(0x9a3412),
          .comment = Rgb(0x3f6f3a),
          .goneMark = Rgb(0xd9534f),
          .freshMark = Rgb(0x3fa34d),
          .changedMark = Rgb(0xd08000)};
}

CompareColours Dark() {
  return {.ground = Rgb(0x16181d),
          .text = Rgb(0xd9dce2),
          .gone = Rgb(0x3b1f22),
          .goneWord = Rgb(0x7a2f35),
          .fresh = Rgb(0x18321f),
          .freshWord = Rgb(0x2c6b3b),
          .filler = Rgb(0x202329),
          .soft = Rgb(0x1d2026),
          .heading = Rgb(0x2a2f39),
          .dim = Rgb(0x9aa1ad),
          .frame = Rgb(0x6b7380),
          .current = Rgb(0x86b4ff),
          .keyword = Rgb(0x86b4ff),
          .string = Rgb(0xf0b48a),
          .comment = Rgb(0x8fc58a),
          .goneMark = Rgb(0xe5686a),
          .freshMark = Rgb(0x5cc46c),
          .changedMark = Rgb(0xe0a030)};
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

struct Sign {
  const char* text;
  QColor CompareColours::*colour;
};

const Sign& SignOf(ChangeState state) {
  static const std::array<Sign, symbols::kChangeStateCount> kSigns{{{"=", &CompareColours::dim},
                                                                    {"\u2248", &CompareColours::dim},
                                                                    {"~", &CompareColours::changedMark},
                                                                    {"\u2192", &CompareColours::current},
                                                                    {"ab", &CompareColours::current},
                                                                    {"+", &CompareColours::freshMark},
                                                                    {"\u2212", &CompareColours::goneMark}}};
  return kSigns[static_cast<std::size_t>(state)];
}

constexpr int kIcon = 16;

}  // namespace

const CompareColours& ColoursFor(const QPalette& palette) {
  static const CompareColours light = Light(), dark = Dark();
  return IsDark(palette) ? dark : light;
}

QIcon StateIcon(ChangeState state, const QPalette& palette) {
  const CompareColours& colours = ColoursFor(palette);
  const Sign& sign = SignOf(state);
  QIcon icon;
  for (const int scale : {1, 2, 3}) {
    QPixmap picture(kIcon * scale, kIcon * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.*sign.colour, 1.2));
    painter.drawRoundedRect(QRectF(1.5, 1.5, kIcon - 3, kIcon - 3), 3, 3);
    QFont font = painter.font();
    const QString text = QString::fromUtf8(sign.text);
    font.setPixelSize(text.size() > 1 ? 8 : 12);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRectF(0, 0, kIcon, kIcon), Qt::AlignCenter, text);
    icon.addPixmap(picture);
    // Not tinted in a selected row.
    icon.addPixmap(picture, QIcon::Selected);
  }
  return icon;
}

}  // namespace quillmate::ui
