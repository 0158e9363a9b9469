#include "code_editor.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "match_strip.h"

namespace quillmate::ui {

CodeEditor::CodeEditor(QWidget* parent)
    : CodeSheet(parent),
      numbers_(new LineNumbers(*this)),
      margin_(new CodeMargin(*this)),
      header_(new StickyHeader(*this)),
      strip_(new MatchStrip(this)) {
  viewport()->setMouseTracking(true);
  connect(strip_, &MatchStrip::LineChosen, this, [this](int line) {
    const int onScreen = viewport()->height() / std::max(1, fontMetrics().height());
    verticalScrollBar()->setValue(std::max(0, document()->findBlockByNumber(line).firstLineNumber() - onScreen / 2));
  });
  connect(margin_, &CodeMargin::MarkClicked, this, &CodeEditor::MarkClicked);
  connect(margin_, &CodeMargin::FoldClicked, this, [this](int line) { SetFolded(line, !IsFolded(line)); });
  connect(header_, &StickyHeader::Clicked, this, &CodeEditor::LineWanted);
  connect(this, &QPlainTextEdit::updateRequest, numbers_, [this](const QRect& area, int scrolled) {
    if (scrolled != 0) {
      numbers_->scroll(0, scrolled);
    } else {
      numbers_->update(0, area.y(), numbers_->width(), area.height());
    }
    margin_->update();
    header_->update();
  });
  // The number of the caret's line stands out.
  connect(this, &QPlainTextEdit::cursorPositionChanged, numbers_, [this] { numbers_->update(); });
  connect(this, &CodeSheet::ModuleLeaves, this, &CodeEditor::ForgetModule);
  connect(this, &CodeSheet::SidesChanged, this, &CodeEditor::PlaceSides);
}

// Before what its signals reach.
CodeEditor::~CodeEditor() { Forget(); }

void CodeEditor::ForgetModule() {
  SetHighlights({});
  link_.reset();
  setExtraSelections({});
}

void CodeEditor::ShowLineNumbers(bool on) {
  numbers_->isOn = on;
  PlaceSides();
}

void CodeEditor::NumberFrom(codedb::Line first) {
  numbers_->first = first.value;
  PlaceSides();
}

void CodeEditor::ShowMargin(bool on) {
  margin_->isOn = on;
  PlaceSides();
}

void CodeEditor::KeepHeader(bool on) {
  header_->isOn = on;
  PlaceSides();
}

void CodeEditor::PlaceSides() {
  const int width = numbers_->Width();
  const int signs = margin_->Width();
  const int head = header_->Height();
  const int strip = strip_->IsEmpty() ? 0 : MatchStrip::kWidth;
  const QMargins margins(width + signs, head, strip, 0);
  if (viewportMargins() != margins) setViewportMargins(margins);
  const QRect area = contentsRect();
  const QRect code = viewport()->geometry();
  strip_->setGeometry(code.right() + 1, code.top(), strip, code.height());
  strip_->setVisible(strip > 0);
  numbers_->setGeometry(area.left(), code.top(), width, code.height());
  numbers_->setVisible(width > 0);
  numbers_->update();
  margin_->setGeometry(area.left() + width, code.top(), signs, code.height());
  margin_->setVisible(signs > 0);
  margin_->update();
  header_->setGeometry(area.left(), area.top(), code.right() + 1 - area.left(), head);
  header_->setVisible(head > 0);
  header_->update();
}

void CodeEditor::SetHighlights(std::vector<navigation::TextMatch> matches) {
  const bool wasEmpty = highlights_.empty();
  if (wasEmpty && matches.empty()) return;
  highlights_ = std::move(matches);
  std::vector<int> lines;
  for (const navigation::TextMatch& match : highlights_) {
    const int line = static_cast<int>(View()->LineFromChar(match.position));
    if (lines.empty() || lines.back() != line) lines.push_back(line);
  }
  strip_->SetLines(std::move(lines), blockCount());
  if (wasEmpty != highlights_.empty()) PlaceSides();
  viewport()->update();
}

/// Below the text of the lines that can be seen.
void CodeEditor::PaintHighlights(const QRect& area) {
  if (highlights_.empty() || !ShowsModule()) return;
  QPainter painter(viewport());
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= area.bottom(); block = block.next()) {
    if (!block.isVisible()) continue;
    const std::size_t start = View()->LineStart(static_cast<std::size_t>(block.blockNumber()));
    const std::size_t end = start + static_cast<std::size_t>(block.length());
    const QTextLine line = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0) : QTextLine();
    auto match = std::lower_bound(highlights_.begin(), highlights_.end(), start,
                                  [](const navigation::TextMatch& m, std::size_t at) { return m.position < at; });
    for (; line.isValid() && match != highlights_.end() && match->position < end; ++match) {
      const int from = static_cast<int>(match->position - start);
      const double left = line.cursorToX(from);
      const double right = line.cursorToX(from + static_cast<int>(match->length));
      painter.fillRect(QRectF(contentOffset().x() + left, top, right - left, line.height()), Colours().occurrence);
    }
    top += blockBoundingRect(block).height();
  }
}

void CodeEditor::paintEvent(QPaintEvent* event) {
  PaintHighlights(event->rect());
  CodeSheet::paintEvent(event);
}

std::optional<std::size_t> CodeEditor::OffsetAt(const QPoint& place) const {
  if (!ShowsModule()) return std::nullopt;
  const QTextCursor cursor = cursorForPosition(place);
  QTextCursor end = cursor;
  end.movePosition(QTextCursor::EndOfBlock);
  const QRect last = cursorRect(end);
  if (place.x() > last.right() || place.y() > last.bottom()) return std::nullopt;
  return OffsetOf(cursor.position());
}

bool CodeEditor::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !answers_.description) return CodeSheet::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const auto offset = OffsetAt(help->pos());
  const QString text = offset ? answers_.description(*offset) : QString();
  if (text.isEmpty()) {
    QToolTip::hideText();
    event->ignore();
  } else {
    QToolTip::showText(help->globalPos(), text, viewport());
  }
  return true;
}

/// Underlines the name at a place and makes the mouse a hand, or takes that back.
void CodeEditor::ShowLink(const QPoint& place, bool wanted) {
  std::optional<navigation::TextMatch> link;
  if (wanted && answers_.link && viewport()->rect().contains(place)) {
    const auto offset = OffsetAt(place);
    if (offset) link = answers_.link(*offset);
  }
  const bool isSame = link.has_value() == link_.has_value() && (!link || (link->position == link_->position));
  if (isSame) return;
  link_ = link;
  viewport()->setCursor(link_ ? Qt::PointingHandCursor : Qt::IBeamCursor);
  QList<QTextEdit::ExtraSelection> marks;
  if (link_) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(document());
    mark.cursor.setPosition(PositionOf(link_->position));
    mark.cursor.setPosition(PositionOf(link_->position + link_->length), QTextCursor::KeepAnchor);
    mark.format.setFontUnderline(true);
    mark.format.setForeground(Colours().link);
    marks.append(mark);
  }
  setExtraSelections(marks);
}

void CodeEditor::mouseMoveEvent(QMouseEvent* event) {
  CodeSheet::mouseMoveEvent(event);
  ShowLink(event->position().toPoint(), event->buttons() == Qt::NoButton && event->modifiers() == Qt::ControlModifier);
}

void CodeEditor::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Control) ShowLink(viewport()->mapFromGlobal(QCursor::pos()), true);
  CodeSheet::keyPressEvent(event);
}

void CodeEditor::keyReleaseEvent(QKeyEvent* event) {
  CodeSheet::keyReleaseEvent(event);
  if (event->key() == Qt::Key_Control) ShowLink({}, false);
  emit CaretMoved();
}

void CodeEditor::mousePressEvent(QMouseEvent* event) {
  const bool isLink = event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
  if (isLink) ShowLink(event->position().toPoint(), true);
  if (isLink && link_) {
    setTextCursor(cursorForPosition(event->position().toPoint()));
    ShowLink({}, false);
    emit LinkFollowed();
    return;
  }
  CodeSheet::mousePressEvent(event);
  if (event->button() == Qt::RightButton) TakeCaretTo(event->position().toPoint());
}

/// A menu is about what was clicked: the caret comes there, unless the click is for the selection.
void CodeEditor::TakeCaretTo(const QPoint& place) {
  const QTextCursor now = textCursor();
  const QTextCursor there = cursorForPosition(place);
  const bool isSelected = there.position() >= now.selectionStart() && there.position() <= now.selectionEnd();
  if (!ShowsModule() || (now.hasSelection() && isSelected)) return;
  setTextCursor(there);
  emit CaretMoved();
}

void CodeEditor::mouseReleaseEvent(QMouseEvent* event) {
  CodeSheet::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton) emit CaretMoved();
}

void CodeEditor::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    CodeSheet::wheelEvent(event);
    return;
  }
  event->accept();
  // Fine wheels send fractions of a step.
  wheel_ += event->angleDelta().y();
  const int steps = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) emit FontStepsTurned(steps);
}

void CodeEditor::resizeEvent(QResizeEvent* event) {
  CodeSheet::resizeEvent(event);
  PlaceSides();
}

}  // namespace quillmate::ui
