#pragma once

#include <QSplitter>

namespace quillmate::ui {

/// True when the bar may be at `left`. All lengths in twips. A container that is very narrow keeps its bar where it
/// is, and neither side is ever squeezed to nothing.
constexpr bool MayStandAt(double left, double containerWidth, double barWidth) noexcept {
  return containerWidth >= 1000 && left >= 200 && left <= containerWidth - barWidth - 100;
}

/// The area that tree and code share, with a bar between them.
class Splitter : public QSplitter {
 public:
  explicit Splitter(QWidget* parent = nullptr);

 protected:
  QSplitterHandle* createHandle() override;
};

}  // namespace quillmate::ui
