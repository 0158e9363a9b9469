#include "desktop_look.h"

#include <QApplication>
#include <QColor>
#include <QStyle>

namespace quillmate::ui {
namespace {

struct DarkColour {
  QPalette::ColorRole role;
  QRgb colour;
};

constexpr DarkColour kDark[] = {
    {QPalette::Window, 0xff2b2b2b},
    {QPalette::WindowText, 0xffe6e6e6},
    {QPalette::Base, 0xff1e1e1e},
    {QPalette::AlternateBase, 0xff262626},
    {QPalette::Text, 0xffe6e6e6},
    {QPalette::Button, 0xff363636},
    {QPalette::ButtonText, 0xffe6e6e6},
    {QPalette::BrightText, 0xffffffff},
    {QPalette::ToolTipBase, 0xff3c3c3c},
    {QPalette::ToolTipText, 0xffe6e6e6},
    {QPalette::Light, 0xff505050},
    {QPalette::Midlight, 0xff444444},
    {QPalette::Mid, 0xff242424},
    {QPalette::Dark, 0xff1a1a1a},
    {QPalette::Shadow, 0xff101010},
    {QPalette::Highlight, 0xff2f65a8},
    {QPalette::HighlightedText, 0xffffffff},
    {QPalette::Link, 0xff7ab7ff},
    {QPalette::LinkVisited, 0xffc3a2ff},
    {QPalette::PlaceholderText, 0xff9a9a9a},
};

constexpr QRgb kDisabledText = 0xff808080;

/// The style makes the frame of a check box from the window's colour, darkened: on dark ground it would vanish.
constexpr QRgb kBoxFrame = 0xffa8a8a8;

}  // namespace

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

QPalette DarkPalette() {
  QPalette palette;
  for (const DarkColour& entry : kDark) palette.setColor(entry.role, QColor::fromRgb(entry.colour));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor::fromRgb(kDisabledText));
  }
  return palette;
}

void UseLook(bool dark) {
  static const QPalette start = QApplication::palette();
  static const QString startStyle = QApplication::style()->objectName();
  if (dark == IsDark(QApplication::palette())) return;
  // The desktop's own style may paint parts in its light colours.
  QApplication::setStyle(dark ? QStringLiteral("Fusion") : startStyle);
  QApplication::setPalette(dark ? DarkPalette() : start);
  QPalette boxes = QApplication::palette();
  if (dark) boxes.setColor(QPalette::Window, QColor::fromRgb(kBoxFrame));
  QApplication::setPalette(boxes, "QCheckBox");
}

}  // namespace quillmate::ui
