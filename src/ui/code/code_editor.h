#pragma once

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextDocument>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <quillmate/navigation/code_view.h>
#include <quillmate/navigation/search.h>

#include "code_margin.h"
#include "code_style.h"

namespace quillmate::ui {

class LineNumbers;
class MatchStrip;

/// What is known of the names in the code on screen. Offsets are those of its text.
struct NameAnswers {
  /// The name at an offset that leads somewhere.
  std::function<std::optional<navigation::TextMatch>(std::size_t offset)> link;
  /// What it is, as HTML; empty where nothing is known.
  std::function<QString(std::size_t offset)> description;
};

/// The code view: shows one module at a time, read-only but with a caret. Caret and selection belong to the module's
/// CodeView and are kept there; what is built for the screen (a text document for each module) is made when a module is
/// first looked at and kept for those looked at last, so that a large project costs little memory.
class CodeEditor : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit CodeEditor(QWidget* parent = nullptr);
  ~CodeEditor() override;

  /// Fonts and colours; what was built before is dropped, the view on screen is built anew.
  void SetStyle(CodeStyle style);

  /// Shows a module. `view` and `runs` must live until another one is shown or Forget is called; `index` tells the
  /// modules apart.
  void ShowView(int index, navigation::CodeView& view, const std::vector<navigation::StyleRun>& runs);
  /// Takes over caret and selection from the view and scrolls their line to the top.
  void ShowSelection();
  /// Takes over caret and selection; only what can't be seen is scrolled to, into the middle.
  void RevealSelection();
  /// Shows nothing and drops everything built: before the views of the project go away.
  void Forget();

  /// Shows everything in a font that is some points larger than that of the style, or smaller; what goes to the
  /// clipboard keeps the style's size.
  void SetFontSteps(int steps);
  /// The column with line numbers. `first`: number of the first line.
  void ShowLineNumbers(bool on);
  void NumberFrom(codedb::Line first);

  /// Names under the mouse tell what they are, and lead there with the Ctrl key held.
  void SetAnswers(NameAnswers answers) { answers_ = std::move(answers); }
  /// Lights stretches of the code on screen, by position, until another module is shown.
  void SetHighlights(std::vector<navigation::TextMatch> matches);
  const std::vector<navigation::TextMatch>& Highlights() const noexcept { return highlights_; }

  /// Signs beside the code and a line above it with the header of the routine whose inside is at the top.
  void ShowMargin(bool on);
  void KeepHeader(bool on);

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

  const CodeColours& Colours() const noexcept { return style_.screen; }
  /// 0-based line at the top of the screen.
  int TopLine() const { return firstVisibleBlock().blockNumber(); }
  /// Left edge of the code in pixels of the widget, scrolled away perhaps.
  double CodeLeft() const;

  bool ShowsModule() const noexcept { return view_ != nullptr; }
  /// Calls `line(number, top)` for each line that can be seen: 0-based number, upper edge in pixels of the viewport.
  void ForEachLineOnScreen(const std::function<void(int, int)>& line) const;

  /// The code on screen and what is selected of it, Windows-1252 with CR LF; empty while nothing is shown. Valid until
  /// something else is shown.
  std::string_view Code() const;
  std::string_view SelectedCode() const;

  /// Modules whose text document is kept.
  std::size_t KeptDocuments() const noexcept { return pages_.size(); }

 signals:
  /// A key or the left mouse button was released, or the right one pressed: the caret may have moved.
  void CaretMoved();
  /// The wheel was turned by some steps, up positive, with the Ctrl key held.
  void FontStepsTurned(int steps);
  /// A name was clicked with the Ctrl key held. The caret is there.
  void LinkFollowed();
  /// The place of the signs beside a 0-based line was clicked.
  void MarkClicked(int line);
  /// A 0-based line is to be gone to.
  void LineWanted(int line);

 protected:
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Page;

  Page& PageOf(int index);
  void Trim();
  void StoreScroll();
  void StoreSelection();
  void TakeCaretTo(const QPoint& place);
  void PlaceCursor();
  int PositionOf(std::size_t offset) const;
  std::size_t OffsetOf(int position) const;
  /// The character at a place of the viewport; nothing beside the text.
  std::optional<std::size_t> OffsetAt(const QPoint& place) const;
  void ShowLink(const QPoint& place, bool wanted);
  void PaintHighlights(const QRect& area);
  void PaintBehindLines(const QRect& area);
  void ScrollToLine(int line);
  void ApplyFolds();
  void UnfoldAround(int line);
  void LeaveFold(bool down);
  QFont ShownFont() const;
  void UseFont(QTextDocument& document) const;
  void PlaceNumbers();

  CodeStyle style_;
  int fontSteps_ = 0;
  int wheel_ = 0;
  LineNumbers* numbers_ = nullptr;
  MatchStrip* strip_ = nullptr;
  CodeMargin* margin_ = nullptr;
  StickyHeader* header_ = nullptr;
  std::vector<LineMark> marks_;
  NameAnswers answers_;
  std::optional<navigation::TextMatch> link_;
  std::vector<navigation::TextMatch> highlights_;
  navigation::CodeView* view_ = nullptr;
  const std::vector<navigation::StyleRun>* runs_ = nullptr;
  /// Last used first.
  std::list<Page> pages_;
  bool following_ = false;
};

}  // namespace quillmate::ui
