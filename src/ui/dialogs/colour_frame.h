#pragma once

#include <QAbstractButton>
#include <QGroupBox>
#include <QString>
#include <cstdint>

namespace quillmate::ui {

/// One field of the palette, `lblFarbe`. A click or the space key picks its colour.
class Swatch : public QAbstractButton {
 public:
  Swatch(const QColor& colour, const QString& name);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor colour_;
};

/// A frame that shows a colour, with the sixteen colours of the palette to choose from. Colours are
/// red + 256 * green + 65536 * blue.
class ColourFrame : public QGroupBox {
 public:
  /// The swatches are named "lblFarbe" and a number from `firstNumber` on.
  ColourFrame(const QString& name, const QString& caption, int firstNumber);

  std::int32_t Colour() const noexcept { return colour_; }
  void SetColour(std::int32_t colour);

 private:
  std::int32_t colour_ = 0;
};

}  // namespace quillmate::ui
