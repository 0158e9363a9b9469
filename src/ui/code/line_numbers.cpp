#include "line_numbers.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "code_editor.h"

namespace quillmate::ui {
namespace {

constexpr int kMargin = 5;
/// A module that grows by a few lines must not shift its code.
constexpr int kLeastNumber = 999;

const QColor kGround(0xf2, 0xf2, 0xf2);
const QColor kInk(0x80, 0x80, 0x80);
const QColor kCaretInk(0x20, 0x20, 0x20);

}  // namespace

LineNumbers::LineNumbers(CodeEditor& editor) : QWidget(&editor), editor_(editor) {
  setObjectName(QStringLiteral("picZeilen"));
}

int LineNumbers::Width() const {
  if (!isOn || !editor_.ShowsModule()) return 0;
  const int last = std::max(kLeastNumber, first + editor_.blockCount() - 1);
  const auto digits = QString::number(last).size();
  return 2 * kMargin + editor_.fontMetrics().horizontalAdvance(QLatin1Char('9')) * static_cast<int>(digits);
}

void LineNumbers::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), kGround);
  painter.setFont(editor_.font());
  const int caret = editor_.textCursor().blockNumber();
  const int height = editor_.fontMetrics().height();
  editor_.ForEachLineOnScreen([&](int line, int top) {
    if (top + height < event->rect().top() || top > event->rect().bottom()) return;
    painter.setPen(line == caret ? kCaretInk : kInk);
    painter.drawText(0, top, width() - kMargin, height, Qt::AlignRight, QString::number(first + line));
  });
}

}  // namespace quillmate::ui
