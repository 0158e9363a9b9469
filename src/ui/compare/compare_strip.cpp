#include "compare_strip.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "compare_colours.h"

namespace quillmate::ui {
namespace {

constexpr int kLeastMark = 3;

}  // namespace

CompareStrip::CompareStrip(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("picAenderungen"));
  setAccessibleName(QStringLiteral("Alle Änderungen des Moduls"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  setCursor(Qt::PointingHandCursor);
}

void CompareStrip::SetChanges(std::vector<symbols::ChangeStretch> changes, std::size_t rows) {
  changes_ = std::move(changes);
  rows_ = std::max<std::size_t>(1, rows);
  setToolTip(QStringLiteral("Änderungen: %1").arg(changes_.size()));
  update();
}

void CompareStrip::SetSeen(int first, int count) {
  seenFirst_ = first;
  seenCount_ = count;
  update();
}

int CompareStrip::Top(std::size_t row) const {
  return static_cast<int>(row * static_cast<std::size_t>(std::max(1, height())) / rows_);
}

void CompareStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const CompareColours& colours = ColoursFor(palette());
  painter.fillRect(rect(), colours.soft);
  using Kind = symbols::CompareRow::Kind;
  int behind = -1;
  for (const symbols::ChangeStretch& change : changes_) {
    const int top = Top(change.first);
    const int bottom = std::max(top + kLeastMark, Top(change.first + std::size_t{change.count}));
    // Of marks that fall on one place the first is enough.
    if (bottom <= behind) continue;
    const QColor& colour = change.kind == Kind::kNew    ? colours.freshMark
                           : change.kind == Kind::kGone ? colours.goneMark
                                                        : colours.changedMark;
    painter.fillRect(3, std::max(top, behind), width() - 6, bottom - std::max(top, behind), colour);
    behind = bottom;
  }
  if (seenCount_ <= 0 || static_cast<std::size_t>(seenCount_) >= rows_) return;
  const int top = Top(static_cast<std::size_t>(std::max(0, seenFirst_)));
  const int bottom = Top(static_cast<std::size_t>(std::max(0, seenFirst_) + seenCount_));
  painter.setPen(colours.frame);
  painter.drawRect(0, std::min(top, height() - 4), width() - 1, std::max(3, bottom - top - 1));
}

void CompareStrip::Choose(const QMouseEvent& event) {
  const int y = std::clamp(event.position().toPoint().y(), 0, std::max(0, height() - 1));
  const std::size_t row = static_cast<std::size_t>(y) * rows_ / static_cast<std::size_t>(std::max(1, height()));
  emit RowChosen(std::min(row, rows_ - 1));
}

void CompareStrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Choose(*event);
}

void CompareStrip::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) != 0) Choose(*event);
}

}  // namespace quillmate::ui
