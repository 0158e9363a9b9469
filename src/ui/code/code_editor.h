#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <quillmate/navigation/search.h>

#include "code_margin.h"
#include "code_sheet.h"

namespace quillmate::ui {

class MatchStrip;

/// What is known of the names in the code on screen. Offsets are those of its text.
struct NameAnswers {
  /// The name at an offset that leads somewhere.
  std::function<std::optional<navigation::TextMatch>(std::size_t offset)> link;
  /// What it is, as HTML; empty where nothing is known.
  std::function<QString(std::size_t offset)> description;
};

/// The code view: code with line numbers, signs and the header of the routine around it, and with names that the mouse
/// and the keys lead away from.
class CodeEditor : public CodeSheet {
  Q_OBJECT

 public:
  explicit CodeEditor(QWidget* parent = nullptr);
  ~CodeEditor() override;

  /// The column with line numbers. `first`: number of the first line.
  void ShowLineNumbers(bool on);
  void NumberFrom(codedb::Line first);
  /// Signs beside the code and a line above it with the header of the routine whose inside is at the top.
  void ShowMargin(bool on);
  void KeepHeader(bool on);

  /// Names under the mouse tell what they are, and lead there with the Ctrl key held.
  void SetAnswers(NameAnswers answers) { answers_ = std::move(answers); }
  /// Lights stretches of the code on screen, by position, until another module is shown.
  void SetHighlights(std::vector<navigation::TextMatch> matches);
  const std::vector<navigation::TextMatch>& Highlights() const noexcept { return highlights_; }

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
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ForgetModule();
  void PlaceSides();
  void TakeCaretTo(const QPoint& place);
  /// The character at a place of the viewport; nothing beside the text.
  std::optional<std::size_t> OffsetAt(const QPoint& place) const;
  void ShowLink(const QPoint& place, bool wanted);
  void PaintHighlights(const QRect& area);

  LineNumbers* numbers_;
  CodeMargin* margin_;
  StickyHeader* header_;
  MatchStrip* strip_;
  NameAnswers answers_;
  std::optional<navigation::TextMatch> link_;
  std::vector<navigation::TextMatch> highlights_;
  int wheel_ = 0;
};

}  // namespace quillmate::ui
