#include "cut_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace quillmate::ui {

CutLabel::CutLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
  setMinimumWidth(1);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QRect CutLabel::TextRoom() const { return contentsRect().adjusted(margin(), 0, -margin(), 0); }

QString CutLabel::CutText() const {
  return fontMetrics().elidedText(text().section(QLatin1Char('\n'), 0, 0), Qt::ElideRight, TextRoom().width());
}

void CutLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawFrame(&painter);
  style()->drawItemText(&painter, TextRoom(), static_cast<int>(alignment()), palette(), isEnabled(), CutText(),
                        foregroundRole());
}

bool CutLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || CutText() == text()) return QLabel::event(event);
  QString all = text();
  if (!toolTip().isEmpty() && toolTip() != all) all += QStringLiteral("\n(%1)").arg(toolTip());
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), all, this);
  return true;
}

}  // namespace quillmate::ui
