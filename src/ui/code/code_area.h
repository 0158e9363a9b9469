#pragma once

#include <QPoint>
#include <QStackedWidget>
#include <string>
#include <vector>

#include <quillmate/navigation/code_view.h>
#include <quillmate/project/session.h>

#include "code_editor.h"
#include "code_style.h"

namespace quillmate::ui {

/// The code on screen: the code view `rtbHaupt` with the session's visible module, and over it, while zoom is on, the
/// zoom view `rtbZoom` with only the routine at the caret.
class CodeArea : public QStackedWidget {
  Q_OBJECT

 public:
  explicit CodeArea(project::Session& session);

  /// The one of the two views that is seen.
  CodeEditor& Editor() const;
  CodeEditor& Main() const { return *main_; }

  /// Shows the session's visible module with its caret and gives the code the focus. Throws when the index can't be
  /// asked for the zoom view.
  void ShowPlace(project::Reveal reveal);
  /// Shows nothing: before the views of the project go away.
  void Forget();

  bool IsZoomed() const { return currentIndex() == 1; }
  /// Shows or hides the zoom view. Throws when the index can't be asked; zoom stays off then.
  void SetZoom(bool on);

  /// What is selected in the view that is seen, Windows-1252 with CR LF; empty when nothing is.
  std::string Selection() const { return std::string(Editor().SelectedCode()); }

  /// The same, if the user has selected it: what the program marks when it shows a place does not count.
  std::string ChosenSelection() const;

  /// The offset in the visible module's text of one in the view that is seen.
  std::size_t InModule(std::size_t offset) const { return IsZoomed() ? offset + zoomed_.start : offset; }
  /// The caret's place in the visible module's text, after a word that is selected up to its end.
  std::size_t Caret() const;
  /// Answers for both views; offsets are those of the module's text.
  void SetAnswers(const NameAnswers& answers);
  /// Lights stretches of the visible module's text, by position.
  void SetHighlights(const std::vector<navigation::TextMatch>& matches);

  void SetStyle(const CodeStyle& style);
  void SetFontSteps(int steps);
  void ShowLineNumbers(bool on);

 signals:
  /// The caret of the code view may have moved.
  void CaretMoved();
  /// The same of the zoom view.
  void ZoomCaretMoved();
  void FontStepsTurned(int steps);
  void ZoomChanged(bool on);
  /// The session's place is on screen, perhaps in another module than before.
  void PlaceShown();
  /// The name at the caret is to be followed.
  void LinkFollowed();
  /// The context menu of one of the views is wanted; the place is global.
  void MenuWanted(const QPoint& place);
  void ZoomMenuWanted(const QPoint& place);

 private:
  /// What the zoom view shows: a stretch of the visible module.
  struct ZoomText {
    navigation::CodeView view;
    std::vector<navigation::StyleRun> runs;
    /// Offset in the module's text.
    std::size_t start = 0;
  };

  void BuildZoom();
  void SelectInZoom(std::size_t position, std::size_t length);

  project::Session& session_;
  CodeEditor* main_;
  CodeEditor* zoom_;
  ZoomText zoomed_;
  /// What was selected when a place was last shown.
  std::string marked_;
};

}  // namespace quillmate::ui
