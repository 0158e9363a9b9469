#pragma once

#include <QLabel>

namespace quillmate::ui {

/// One line of plain text that never widens its window: what does not fit ends in "…", and the tooltip tells all of it.
/// text() stays whole.
class CutLabel : public QLabel {
 public:
  explicit CutLabel(const QString& text = {}, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QRect TextRoom() const;
  /// As it is painted.
  QString CutText() const;
};

}  // namespace quillmate::ui
