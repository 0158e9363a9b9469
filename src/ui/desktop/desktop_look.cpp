#include "desktop_look.h"

#include <QApplication>
#include <QColor>
#include <QProxyStyle>
#include <QStyleOptionButton>

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

/// Frames of check boxes and radio buttons, on light and on dark ground: 3:1 at least against what is around them.
struct BoxFrame {
  QStyle::PrimitiveElement element;
  QRgb light;
  QRgb dark;
};
/// The style darkens the window's colour to make these frames, each in its own way: this is what it is given instead.
constexpr BoxFrame kBoxFrames[] = {
    {QStyle::PE_IndicatorCheckBox, 0xff989898, 0xffa8a8a8},
    {QStyle::PE_IndicatorRadioButton, 0xffa8a8a8, 0xffc0c0c0},
};

/// The desktop's style with visible frames around boxes, and with captions alone on the buttons of a dialog: standard
/// buttons would have pictures beside others that have none.
class ProgramStyle : public QProxyStyle {
 public:
  explicit ProgramStyle(const QString& name) : QProxyStyle(name) { setObjectName(name); }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* answer) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, answer);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option);
    for (const BoxFrame& frame : kBoxFrames) {
      if (frame.element != element || box == nullptr) continue;
      QStyleOptionButton framed(*box);
      const QRgb colour = IsDark(box->palette) ? frame.dark : frame.light;
      framed.palette.setColor(QPalette::Window, QColor::fromRgb(colour));
      return QProxyStyle::drawPrimitive(element, &framed, painter, widget);
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
};

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

void UseProgramStyle() { QApplication::setStyle(new ProgramStyle(QApplication::style()->objectName())); }

void UseLook(bool dark) {
  static const QPalette start = QApplication::palette();
  static const QString startStyle = QApplication::style()->objectName();
  if (dark == IsDark(QApplication::palette())) return;
  // The desktop's own style may paint parts in its light colours.
  QApplication::setStyle(new ProgramStyle(dark ? QStringLiteral("fusion") : startStyle));
  QApplication::setPalette(dark ? DarkPalette() : start);
}

}  // namespace quillmate::ui
