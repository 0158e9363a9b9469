#pragma once

#include <QWidget>

namespace quillmate::ui {

class CodeEditor;

/// The column with the line numbers at the left edge of a code view. Numbers are 1-based, as the index counts lines.
class LineNumbers : public QWidget {
 public:
  explicit LineNumbers(CodeEditor& editor);

  /// Pixels that the numbers of the text on screen need; 0 while they are switched off.
  int Width() const;
  QSize sizeHint() const override { return {Width(), 0}; }

  bool isOn = false;
  /// Number of the first line on screen's text: a zoomed routine keeps the numbers it has in its module.
  int first = 1;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  CodeEditor& editor_;
};

}  // namespace quillmate::ui
