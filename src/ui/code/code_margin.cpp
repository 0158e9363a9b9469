#include "code_margin.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>
#include <algorithm>

#include "code_editor.h"

namespace quillmate::ui {
namespace {

/// A bookmark: a flag with a notch at its right.
void DrawBookmark(QPainter& painter, const QRectF& box) {
  const QRectF flag = box.adjusted(box.width() * 0.15, box.height() * 0.2, -box.width() * 0.15, -box.height() * 0.2);
  painter.drawPolygon(QPolygonF({flag.topLeft(),
                                 flag.topRight(),
                                 {flag.right() - flag.width() / 3, flag.center().y()},
                                 flag.bottomRight(),
                                 flag.bottomLeft()}));
}

/// A note: a sheet with lines.
void DrawNote(QPainter& painter, const QRectF& box, const QColor& paper) {
  const QRectF sheet = box.adjusted(box.width() * 0.2, box.height() * 0.15, -box.width() * 0.2, -box.height() * 0.15);
  painter.drawRect(sheet);
  painter.setPen(QPen(paper, 1));
  for (const double part : {0.3, 0.55, 0.8}) {
    const double y = sheet.top() + sheet.height() * part;
    painter.drawLine(QPointF(sheet.left() + 2, y), QPointF(sheet.right() - 1, y));
  }
  painter.setPen(Qt::NoPen);
}

/// An arrow to the right for what is folded, downwards for what is not.
void DrawArrow(QPainter& painter, const QRectF& box, bool folded) {
  const QPointF c = box.center();
  const double r = box.width() * 0.36;
  if (folded) {
    painter.drawPolygon(
        QPolygonF({{c.x() - r * 0.7, c.y() - r}, {c.x() + r * 0.9, c.y()}, {c.x() - r * 0.7, c.y() + r}}));
  } else {
    painter.drawPolygon(
        QPolygonF({{c.x() - r, c.y() - r * 0.7}, {c.x() + r, c.y() - r * 0.7}, {c.x(), c.y() + r * 0.9}}));
  }
}

}  // namespace

CodeMargin::CodeMargin(CodeEditor& editor) : QWidget(&editor), editor_(editor) {
  setObjectName(QStringLiteral("picRand"));
  setAccessibleName(QStringLiteral("Lesezeichen, Notizen und Einklappen"));
}

int CodeMargin::Side() const { return std::max(8, editor_.fontMetrics().height() * 4 / 5); }

int CodeMargin::Width() const { return isOn && editor_.ShowsModule() ? 2 * Side() : 0; }

int CodeMargin::LineAt(int y) const {
  int found = -1;
  editor_.ForEachLineOnScreen([&](int line, int top) {
    if (top <= y) found = line;
  });
  return found;
}

void CodeMargin::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const CodeColours& colours = editor_.Colours();
  painter.fillRect(event->rect(), colours.margin);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const int height = editor_.fontMetrics().height();
  const int side = Side();
  editor_.ForEachLineOnScreen([&](int line, int top) {
    if (top + height < event->rect().top() || top > event->rect().bottom()) return;
    const double y = top + (height - side) / 2.0;
    if (const LineMark* mark = editor_.MarkAt(line)) {
      // Of a line with both the note is to be read after it.
      painter.setBrush(mark->isBookmark ? colours.sign : colours.note);
      const QRectF box(0, y, side, side);
      if (mark->isBookmark) {
        DrawBookmark(painter, box);
      } else {
        DrawNote(painter, box, colours.margin);
      }
    }
    if (!editor_.CanFold(line)) return;
    painter.setBrush(editor_.IsFolded(line) ? colours.caretNumber : colours.number);
    DrawArrow(painter, QRectF(side, y, side, side), editor_.IsFolded(line));
  });
}

void CodeMargin::mousePressEvent(QMouseEvent* event) {
  const int line = LineAt(event->position().toPoint().y());
  if (event->button() != Qt::LeftButton || line < 0) return;
  if (event->position().x() < Side()) {
    emit MarkClicked(line);
  } else {
    emit FoldClicked(line);
  }
}

bool CodeMargin::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const LineMark* mark = editor_.MarkAt(LineAt(help->pos().y()));
  QToolTip::showText(help->globalPos(), mark == nullptr ? QString() : mark->note.toHtmlEscaped(), this);
  return true;
}

StickyHeader::StickyHeader(CodeEditor& editor) : QWidget(&editor), editor_(editor) {
  setObjectName(QStringLiteral("lblKopf"));
  setCursor(Qt::PointingHandCursor);
  setToolTip(QStringLiteral("Kopf der Routine, die oben beginnt: Ein Klick führt hin"));
}

int StickyHeader::Height() const { return isOn && editor_.ShowsModule() ? editor_.fontMetrics().height() + 3 : 0; }

const project::RoutineLines* StickyHeader::Routine() const {
  const std::vector<project::RoutineLines>& routines = editor_.Routines();
  const int top = editor_.TopLine();
  const auto after = std::ranges::upper_bound(routines, top, {}, &project::RoutineLines::first);
  if (after == routines.begin()) return nullptr;
  const project::RoutineLines& routine = *std::prev(after);
  return routine.first < top && top <= routine.last ? &routine : nullptr;
}

void StickyHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const CodeColours& colours = editor_.Colours();
  painter.fillRect(rect(), colours.margin);
  painter.setPen(colours.number);
  painter.drawLine(0, height() - 1, width(), height() - 1);
  const project::RoutineLines* routine = Routine();
  if (routine == nullptr) return;
  const QTextBlock block = editor_.document()->findBlockByNumber(routine->first);
  QTextLayout header(block.text(), editor_.font());
  QTextOption option = editor_.document()->defaultTextOption();
  header.setTextOption(option);
  header.setFormats(block.layout()->formats());
  header.beginLayout();
  header.createLine();
  header.endLayout();
  painter.setPen(colours.ink);
  header.draw(&painter, QPointF(editor_.CodeLeft(), 1));
}

void StickyHeader::mousePressEvent(QMouseEvent* event) {
  const project::RoutineLines* routine = Routine();
  if (event->button() == Qt::LeftButton && routine != nullptr) emit Clicked(routine->first);
}

}  // namespace quillmate::ui
