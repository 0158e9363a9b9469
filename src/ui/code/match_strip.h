#pragma once

#include <QWidget>
#include <vector>

namespace quillmate::ui {

/// A narrow column at the right edge of a code view that shows where in the module something is. A click scrolls
/// there.
class MatchStrip : public QWidget {
  Q_OBJECT

 public:
  explicit MatchStrip(QWidget* parent);

  static constexpr int kWidth = 8;

  /// 0-based lines, ascending, of a text with `lineCount` lines.
  void SetLines(std::vector<int> lines, int lineCount);
  bool IsEmpty() const { return lines_.empty(); }

 signals:
  void LineChosen(int line);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  int Top(int line) const;

  std::vector<int> lines_;
  int lineCount_ = 1;
};

}  // namespace quillmate::ui
