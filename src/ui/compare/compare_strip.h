#pragma once

#include <QWidget>
#include <vector>

#include <quillmate/symbols/compare_rows.h>

namespace quillmate::ui {

/// A narrow column beside the two sides: where all changes of what is shown are, and what of it can be seen. A click
/// scrolls there.
class CompareStrip : public QWidget {
  Q_OBJECT

 public:
  explicit CompareStrip(QWidget* parent = nullptr);

  void SetChanges(std::vector<symbols::ChangeStretch> changes, std::size_t rows);
  void SetSeen(int first, int count);
  QSize sizeHint() const override { return {kWidth, kWidth}; }

 signals:
  void RowChosen(std::size_t row);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  static constexpr int kWidth = 16;
  int Top(std::size_t row) const;
  void Choose(const QMouseEvent& event);

  std::vector<symbols::ChangeStretch> changes_;
  std::size_t rows_ = 1;
  int seenFirst_ = 0, seenCount_ = 0;
};

}  // namespace quillmate::ui
