#pragma once

#include <QPlainTextEdit>
#include <QTextBlock>
#include <functional>
#include <list>
#include <optional>
#include <string_view>
#include <vector>

#include <quillmate/navigation/code_view.h>

#include "code_page.h"
#include "code_style.h"

namespace quillmate::ui {

/// Code on screen, one module at a time, read-only but with a caret. Caret and selection belong to the module's
/// CodeView and are kept there; what is built for the screen (a text document for each module) is made when a module is
/// first looked at and kept for those looked at last, so that a large project costs little memory.
class CodeSheet : public QPlainTextEdit {
  Q_OBJECT

 public:
  /// Fonts and colours; what was built before is dropped, the view on screen is built anew.
  void SetStyle(CodeStyle style);
  const CodeColours& Colours() const noexcept { return style_.screen; }
  /// Shows everything in a font that is some points larger than that of the style, or smaller; what goes to the
  /// clipboard keeps the style's size.
  void SetFontSteps(int steps);

  /// Shows a module. `view` and `runs` must live until another one is shown or Forget is called; `index` tells the
  /// modules apart.
  void ShowView(int index, navigation::CodeView& view, const std::vector<navigation::StyleRun>& runs);
  bool ShowsModule() const noexcept { return view_ != nullptr; }
  /// Takes over caret and selection from the view and scrolls their line to the top.
  void ShowSelection();
  /// Takes over caret and selection; only what can't be seen is scrolled to, into the middle.
  void RevealSelection();
  /// Shows nothing and drops everything built: before the views of the project go away.
  void Forget();
  /// Modules whose text document is kept.
  std::size_t KeptDocuments() const noexcept { return pages_.size(); }

  /// The code on screen and what is selected of it, Windows-1252 with CR LF; empty while nothing is shown. Valid until
  /// something else is shown.
  std::string_view Code() const;
  std::string_view SelectedCode() const;

  /// What can be folded in the module on screen, and its routines; kept as long as its text document is.
  void SetStructure(std::vector<project::Fold> folds, std::vector<project::RoutineLines> routines);
  bool HasStructure() const;
  const std::vector<project::RoutineLines>& Routines() const;
  bool CanFold(int line) const;
  bool IsFolded(int line) const;
  void SetFolded(int line, bool on);
  /// Folds the innermost stretch around the caret, or unfolds it. False where there is nothing to fold.
  bool ToggleFoldAtCaret();
  /// Folds or unfolds everything.
  void FoldAll(bool on);

  /// What is beside the lines on screen, by line, until another module is shown.
  void SetMarks(std::vector<LineMark> marks);
  /// Null for none.
  const LineMark* MarkAt(int line) const;

  /// 0-based line at the top of the screen.
  int TopLine() const { return firstVisibleBlock().blockNumber(); }
  /// Left edge of the code in pixels of the widget, scrolled away perhaps.
  double CodeLeft() const;
  /// Calls `line(number, top)` for each line that can be seen: 0-based number, upper edge in pixels of the viewport.
  void ForEachLineOnScreen(const std::function<void(int, int)>& line) const;

 signals:
  /// The module on screen is about to go: nothing may refer to its text any more.
  void ModuleLeaves();
  /// What is beside the lines has to be placed and drawn anew.
  void SidesChanged();

 protected:
  /// Whoever derives from it calls Forget in its destructor, while it still hears what that tells.
  explicit CodeSheet(QWidget* parent);

  /// Null while nothing is shown.
  const navigation::CodeView* View() const noexcept { return view_; }
  /// Positions of the document for offsets in the module's text, and the other way round.
  int PositionOf(std::size_t offset) const;
  std::size_t OffsetOf(int position) const;

  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  CodePage& PageOf(int index);
  void Trim();
  void StoreScroll();
  void StoreSelection();
  void PlaceCursor();
  void ScrollToLine(int line);
  void ApplyFolds();
  void UnfoldAround(int line);
  void LeaveFold(bool down);
  void PaintAfterLines(const QRect& area);
  QFont ShownFont() const;
  void UseFont(QTextDocument& document) const;

  CodeStyle style_;
  int fontSteps_ = 0;
  navigation::CodeView* view_ = nullptr;
  const std::vector<navigation::StyleRun>* runs_ = nullptr;
  /// Last used first.
  std::list<CodePage> pages_;
  std::vector<LineMark> marks_;
  /// The caret that is on screen is the view's.
  bool following_ = false;
};

}  // namespace quillmate::ui
