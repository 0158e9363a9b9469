#include <QPainter>
#include <QPlainTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <utility>

#include "code_sheet.h"

namespace quillmate::ui {
namespace {

constexpr QChar kEllipsis(0x2026);

bool StartsBefore(const project::Fold& fold, int line) { return fold.first < line; }

/// Where the text of a line ends, in pixels from the start of it.
double TextWidth(const QTextBlock& block) {
  const QTextLine line = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0) : QTextLine();
  return line.isValid() ? line.naturalTextWidth() : 0;
}

}  // namespace

void CodeSheet::SetStructure(std::vector<project::Fold> folds, std::vector<project::RoutineLines> routines) {
  if (view_ == nullptr) return;
  CodePage& page = pages_.front();
  page.folds = std::move(folds);
  page.routines = std::move(routines);
  page.hasStructure = true;
  std::erase_if(pages_.front().folded, [this](int line) { return !CanFold(line); });
  ApplyFolds();
}

bool CodeSheet::HasStructure() const { return view_ != nullptr && pages_.front().hasStructure; }

const std::vector<project::RoutineLines>& CodeSheet::Routines() const {
  static const std::vector<project::RoutineLines> none;
  return view_ == nullptr ? none : pages_.front().routines;
}

bool CodeSheet::CanFold(int line) const {
  if (view_ == nullptr) return false;
  const std::vector<project::Fold>& folds = pages_.front().folds;
  const auto fold = std::lower_bound(folds.begin(), folds.end(), line, StartsBefore);
  return fold != folds.end() && fold->first == line;
}

bool CodeSheet::IsFolded(int line) const { return view_ != nullptr && pages_.front().folded.contains(line); }

void CodeSheet::SetFolded(int line, bool on) {
  if (view_ == nullptr || !CanFold(line) || IsFolded(line) == on) return;
  if (on) {
    pages_.front().folded.insert(line);
  } else {
    pages_.front().folded.erase(line);
  }
  ApplyFolds();
  if (!textCursor().block().isVisible()) LeaveFold(false);
}

void CodeSheet::FoldAll(bool on) {
  if (view_ == nullptr) return;
  pages_.front().folded.clear();
  if (on) {
    for (const project::Fold& fold : pages_.front().folds) pages_.front().folded.insert(fold.first);
  }
  ApplyFolds();
  if (!textCursor().block().isVisible()) LeaveFold(false);
  ensureCursorVisible();
}

bool CodeSheet::ToggleFoldAtCaret() {
  const int line = textCursor().blockNumber();
  if (IsFolded(line)) {
    SetFolded(line, false);
    return true;
  }
  if (view_ == nullptr) return false;
  // Inner ones come after outer ones.
  const std::vector<project::Fold>& folds = pages_.front().folds;
  auto fold = std::lower_bound(folds.begin(), folds.end(), line + 1, StartsBefore);
  while (fold != folds.begin()) {
    --fold;
    if (fold->last < line) continue;
    SetFolded(fold->first, true);
    return true;
  }
  return false;
}

/// Shows and hides lines as the folded stretches have it.
void CodeSheet::ApplyFolds() {
  const std::set<int>& folded = pages_.front().folded;
  int hiddenTo = -1;
  bool changed = false;
  const std::vector<project::Fold>& folds = pages_.front().folds;
  auto fold = folds.begin();
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    const int line = block.blockNumber();
    const bool visible = line > hiddenTo;
    for (; fold != folds.end() && fold->first <= line; ++fold) {
      if (folded.contains(fold->first)) hiddenTo = std::max(hiddenTo, fold->last);
    }
    if (block.isVisible() == visible) continue;
    block.setVisible(visible);
    block.setLineCount(visible ? 1 : 0);
    changed = true;
  }
  if (changed) {
    auto* layout = static_cast<QPlainTextDocumentLayout*>(document()->documentLayout());
    emit layout->documentSizeChanged(layout->documentSize());
    layout->requestUpdate();
  }
  emit SidesChanged();
  viewport()->update();
}

void CodeSheet::UnfoldAround(int line) {
  std::set<int>& folded = pages_.front().folded;
  if (folded.empty()) return;
  bool changed = false;
  for (const project::Fold& fold : pages_.front().folds) {
    if (fold.first >= line) break;
    if (fold.last >= line) changed = folded.erase(fold.first) > 0 || changed;
  }
  if (changed) ApplyFolds();
}

/// A key has moved the caret into what is folded: it goes on to the next line that can be seen, or to the one before.
void CodeSheet::LeaveFold(bool down) {
  QTextBlock block = textCursor().block();
  while (down && block.isValid() && !block.isVisible()) block = block.next();
  if (!block.isValid()) block = textCursor().block();
  while (block.isValid() && !block.isVisible()) block = block.previous();
  if (!block.isValid()) return;
  QTextCursor cursor = textCursor();
  cursor.setPosition(block.position(), cursor.hasSelection() ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
  setTextCursor(cursor);
}

/// What is folded away after a line, and what the user has noted there.
void CodeSheet::PaintAfterLines(const QRect& area) {
  if (view_ == nullptr || (marks_.empty() && pages_.front().folded.empty())) return;
  QPainter painter(viewport());
  QFont italic = font();
  italic.setItalic(true);
  const int gap = 2 * fontMetrics().averageCharWidth();
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= area.bottom(); block = block.next()) {
    if (!block.isVisible()) continue;
    const double height = blockBoundingRect(block).height();
    double left = contentOffset().x() + document()->documentMargin() + TextWidth(block) + gap;
    if (IsFolded(block.blockNumber())) {
      const QRectF box(left, top + 2, 2.0 * gap, height - 4);
      painter.setPen(style_.screen.number);
      painter.setFont(font());
      painter.drawRoundedRect(box, 3, 3);
      painter.drawText(box, Qt::AlignCenter, kEllipsis);
      left = box.right() + gap;
    }
    const LineMark* mark = MarkAt(block.blockNumber());
    if (mark != nullptr && !mark->note.isEmpty()) {
      painter.setPen(style_.screen.note);
      painter.setFont(italic);
      const QRectF place(left, top, std::max(0.0, viewport()->width() - left), height);
      painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, mark->note.simplified());
    }
    top += height;
  }
}

}  // namespace quillmate::ui
