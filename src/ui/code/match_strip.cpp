#include "match_strip.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace quillmate::ui {
namespace {

constexpr int kMarkHeight = 3;
const QColor kMark(0xd0, 0x80, 0x00);

}  // namespace

MatchStrip::MatchStrip(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("picStellen"));
  setAccessibleName(QStringLiteral("Stellen des Namens im Modul"));
  hide();
}

void MatchStrip::SetLines(std::vector<int> lines, int lineCount) {
  lines_ = std::move(lines);
  lineCount_ = std::max(1, lineCount);
  setToolTip(QStringLiteral("Stellen des Namens: %1").arg(lines_.size()));
  update();
}

int MatchStrip::Top(int line) const {
  return static_cast<int>(static_cast<qint64>(line) * std::max(1, height() - kMarkHeight) / lineCount_);
}

void MatchStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  int last = -1;
  for (const int line : lines_) {
    const int top = Top(line);
    if (top == last) continue;
    painter.fillRect(1, top, width() - 2, kMarkHeight, kMark);
    last = top;
  }
}

void MatchStrip::mousePressEvent(QMouseEvent* event) {
  if (lines_.empty() || event->button() != Qt::LeftButton) return;
  const int y = event->position().toPoint().y();
  const auto nearest = std::min_element(lines_.begin(), lines_.end(), [&](int a, int b) {
    return std::abs(Top(a) + kMarkHeight / 2 - y) < std::abs(Top(b) + kMarkHeight / 2 - y);
  });
  emit LineChosen(*nearest);
}

}  // namespace quillmate::ui
