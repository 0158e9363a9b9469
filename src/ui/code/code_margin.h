#pragma once

#include <QWidget>

#include "code_sheet.h"

namespace quillmate::ui {

/// The column with the line numbers at the left edge of a code view. Numbers are 1-based, as the index counts lines.
class LineNumbers : public QWidget {
 public:
  explicit LineNumbers(CodeSheet& sheet);

  /// Pixels that the numbers of the text on screen need; 0 while they are switched off.
  int Width() const;
  QSize sizeHint() const override { return {Width(), 0}; }

  bool isOn = false;
  /// Number of the first line on screen's text: a zoomed routine keeps the numbers it has in its module.
  int first = 1;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  CodeSheet& sheet_;
};

/// The column between line numbers and code: bookmarks and notes, and after them the signs that fold routines and
/// blocks.
class CodeMargin : public QWidget {
  Q_OBJECT

 public:
  explicit CodeMargin(CodeSheet& sheet);

  /// Pixels that it needs; 0 where there is nothing to fold or to mark.
  int Width() const;
  QSize sizeHint() const override { return {Width(), 0}; }
  bool isOn = false;

 signals:
  /// The left part was clicked.
  void MarkClicked(int line);
  void FoldClicked(int line);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  int LineAt(int y) const;
  int Side() const;

  CodeSheet& sheet_;
};

/// The line above the code with the header of the routine whose inside is at the top of it.
class StickyHeader : public QWidget {
  Q_OBJECT

 public:
  explicit StickyHeader(CodeSheet& sheet);

  int Height() const;
  QSize sizeHint() const override { return {0, Height()}; }
  /// The routine that is shown; null for none.
  const project::RoutineLines* Routine() const;
  bool isOn = false;

 signals:
  void Clicked(int line);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  CodeSheet& sheet_;
};

}  // namespace quillmate::ui
