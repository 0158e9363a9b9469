#pragma once

#include <QString>
#include <QWidget>
#include <vector>

#include <quillmate/project/folding.h>

namespace quillmate::ui {

class CodeEditor;

/// What the user has put beside a line: 0-based.
struct LineMark {
  int line = 0;
  bool isBookmark = false;
  /// Empty for none.
  QString note;
};

/// The column between line numbers and code: bookmarks and notes, and after them the signs that fold routines and
/// blocks.
class CodeMargin : public QWidget {
  Q_OBJECT

 public:
  explicit CodeMargin(CodeEditor& editor);

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

  CodeEditor& editor_;
};

/// The line above the code with the header of the routine whose inside is at the top of it.
class StickyHeader : public QWidget {
  Q_OBJECT

 public:
  explicit StickyHeader(CodeEditor& editor);

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
  CodeEditor& editor_;
};

}  // namespace quillmate::ui
