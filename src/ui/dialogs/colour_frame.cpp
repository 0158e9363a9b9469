#include "colour_frame.h"

#include <QGridLayout>
#include <QPainter>

#include "code_style.h"

namespace quillmate::ui {
namespace {

/// Three frames side by side fit a small screen at twice the scale.
constexpr int kSwatchSize = 18;
constexpr int kColumns = 8;

struct PaletteColour {
  std::int32_t value;
  const char* name;
};

constexpr PaletteColour kPalette[] = {
    {0x000000, "Schwarz"},    {0x800000, "Dunkelblau"}, {0x008000, "Dunkelgrün"}, {0x808000, "Dunkeltürkis"},
    {0x000080, "Dunkelrot"},  {0x800080, "Violett"},    {0x008080, "Oliv"},       {0xC0C0C0, "Hellgrau"},
    {0x808080, "Dunkelgrau"}, {0xFF0000, "Blau"},       {0x00FF00, "Grün"},       {0xFFFF00, "Türkis"},
    {0x0000FF, "Rot"},        {0xFF00FF, "Magenta"},    {0x00FFFF, "Gelb"},       {0xFFFFFF, "Weiß"},
};

QColor Contrast(const QColor& colour) { return qGray(colour.rgb()) < 128 ? Qt::white : Qt::black; }

}  // namespace

Swatch::Swatch(const QColor& colour, const QString& name) : colour_(colour) {
  setToolTip(name);
  setAccessibleName(name);
  setFixedSize(sizeHint());
}

QSize Swatch::sizeHint() const { return {kSwatchSize, kSwatchSize}; }

void Swatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), colour_);
  painter.setPen(QColor(0x80, 0x80, 0x80));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (!hasFocus()) return;
  painter.setPen(QPen(Contrast(colour_), 1, Qt::DotLine));
  painter.drawRect(rect().adjusted(3, 3, -4, -4));
}

ColourFrame::ColourFrame(const QString& name, const QString& caption, int firstNumber) : QGroupBox(caption) {
  setObjectName(name);
  setAutoFillBackground(true);
  setAlignment(Qt::AlignHCenter);
  auto* grid = new QGridLayout(this);
  grid->setSpacing(3);
  int number = 0;
  for (const PaletteColour& entry : kPalette) {
    auto* swatch = new Swatch(FromColourValue(entry.value), QString::fromUtf8(entry.name));
    swatch->setObjectName(QStringLiteral("lblFarbe%1").arg(firstNumber + number));
    grid->addWidget(swatch, number / kColumns, number % kColumns);
    connect(swatch, &QAbstractButton::clicked, this, [this, &entry] { SetColour(entry.value); });
    ++number;
  }
  grid->setColumnStretch(kColumns, 1);
}

void ColourFrame::SetColour(std::int32_t colour) {
  colour_ = colour;
  const QColor shown = FromColourValue(colour);
  QPalette frame = palette();
  frame.setColor(QPalette::Window, shown);
  frame.setColor(QPalette::WindowText, Contrast(shown));
  setPalette(frame);
}

}  // namespace quillmate::ui
