#include "code_margin.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>
#include <algorithm>

namespace quillmate::ui {
namespace {

constexpr int kMargin = 5;
/// A module that grows by a few lines must not shift its code.
constexpr int kLeastNumber = 999;

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

LineNumbers::LineNumbers(CodeSheet& sheet) : QWidget(&sheet), sheet_(sheet) {
  setObjectName(QStringLiteral("picZeilen"));
}

int LineNumbers::Width() const {
  if (!isOn || !sheet_.ShowsModule()) return 0;
  const int last = std::max(kLeastNumber, first + sheet_.blockCount() - 1);
  const auto digits = QString::number(last).size();
  return 2 * kMargin + sheet_.fontMetrics().horizontalAdvance(QLatin1Char('9')) * static_cast<int>(digits);
}

void LineNumbers::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), sheet_.Colours().margin);
  painter.setFont(sheet_.font());
  const int caret = sheet_.textCursor().blockNumber();
  const int height = sheet_.fontMetrics().height();
  sheet_.ForEachLineOnScreen([&](int line, int top) {
    if (top + height < event->rect().top() || top > event->rect().bottom()) return;
    painter.setPen(line == caret ? sheet_.Colours().caretNumber : sheet_.Colours().number);
    painter.drawText(0, top, width() - kMargin, height, Qt::AlignRight, QString::number(first + line));
  });
}

CodeMargin::CodeMargin(CodeSheet& sheet) : QWidget(&sheet), sheet_(sheet) {
  setObjectName(QStringLiteral("picRand"));
  setAccessibleName(QStringLiteral("Lesezeichen, Notizen und Einklappen"));
}

int CodeMargin::Side() const { return std::max(8, sheet_.fontMetrics().height() * 4 / 5); }

int CodeMargin::Width() const { return isOn && sheet_.ShowsModule() ? 2 * Side() : 0; }

int CodeMargin::LineAt(int y) const {
  int found = -1;
  sheet_.ForEachLineOnScreen([&](int line, int top) {
    if (top <= y) found = line;
  });
  return found;
}

void CodeMargin::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const CodeColours& colours = sheet_.Colours();
  painter.fillRect(event->rect(), colours.margin);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const int height = sheet_.fontMetrics().height();
  const int side = Side();
  sheet_.ForEachLineOnScreen([&](int line, int top) {
    if (top + height < event->rect().top() || top > event->rect().bottom()) return;
    const double y = top + (height - side) / 2.0;
    if (const LineMark* mark = sheet_.MarkAt(line)) {
      // Of a line with both the note is to be read after it.
      painter.setBrush(mark->isBookmark ? colours.sign : colours.note);
      const QRectF box(0, y, side, side);
      if (mark->isBookmark) {
        DrawBookmark(painter, box);
      } else {
        DrawNote(painter, box, colours.margin);
      }
    }
    if (!sheet_.CanFold(line)) return;
    painter.setBrush(sheet_.IsFolded(line) ? colours.caretNumber : colours.number);
    DrawArrow(painter, QRectF(side, y, side, side), sheet_.IsFolded(line));
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
  const LineMark* mark = sheet_.MarkAt(LineAt(help->pos().y()));
  QToolTip::showText(help->globalPos(), mark == nullptr ? QString() : mark->note.toHtmlEscaped(), this);
  return true;
}

StickyHeader::StickyHeader(CodeSheet& sheet) : QWidget(&sheet), sheet_(sheet) {
  setObjectName(QStringLiteral("lblKopf"));
  setCursor(Qt::PointingHandCursor);
  setToolTip(QStringLiteral("Kopf der Routine, die oben beginnt: Ein Klick führt hin"));
}

int StickyHeader::Height() const { return isOn && sheet_.ShowsModule() ? sheet_.fontMetrics().height() + 3 : 0; }

const project::RoutineLines* StickyHeader::Routine() const {
  const std::vector<project::RoutineLines>& routines = sheet_.Routines();
  const int top = sheet_.TopLine();
  const auto after = std::ranges::upper_bound(routines, top, {}, &project::RoutineLines::first);
  if (after == routines.begin()) return nullptr;
  const project::RoutineLines& routine = *std::prev(after);
  return routine.first < top && top <= routine.last ? &routine : nullptr;
}

void StickyHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const CodeColours& colours = sheet_.Colours();
  painter.fillRect(rect(), colours.margin);
  painter.setPen(colours.number);
  painter.drawLine(0, height() - 1, width(), height() - 1);
  const project::RoutineLines* routine = Routine();
  if (routine == nullptr) return;
  const QTextBlock block = sheet_.document()->findBlockByNumber(routine->first);
  QTextLayout header(block.text(), sheet_.font());
  QTextOption option = sheet_.document()->defaultTextOption();
  header.setTextOption(option);
  header.setFormats(block.layout()->formats());
  header.beginLayout();
  header.createLine();
  header.endLayout();
  painter.setPen(colours.ink);
  header.draw(&painter, QPointF(sheet_.CodeLeft(), 1));
}

void StickyHeader::mousePressEvent(QMouseEvent* event) {
  const project::RoutineLines* routine = Routine();
  if (event->button() == Qt::LeftButton && routine != nullptr) emit Clicked(routine->first);
}

}  // namespace quillmate::ui
