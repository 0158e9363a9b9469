#include "splitter.h"

#include <QMouseEvent>
#include <QSplitterHandle>

#include "twips.h"

namespace quillmate::ui {
namespace {

class SplitterBar : public QSplitterHandle {
 public:
  explicit SplitterBar(QSplitter* parent) : QSplitterHandle(Qt::Horizontal, parent) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    QSplitterHandle::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) grip_ = event->position().toPoint().x();
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (!event->buttons().testFlag(Qt::LeftButton)) return;
    const int left = x() + event->position().toPoint().x() - grip_;
    const double dpi = logicalDpiX();
    if (MayStandAt(ToTwips(left, dpi), ToTwips(splitter()->width(), dpi), ToTwips(width(), dpi))) moveSplitter(left);
  }

 private:
  /// Where inside the bar the mouse took it.
  int grip_ = 0;
};

}  // namespace

Splitter::Splitter(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {
  setObjectName(QStringLiteral("fraContainer"));
  setChildrenCollapsible(false);
}

QSplitterHandle* Splitter::createHandle() { return new SplitterBar(this); }

}  // namespace quillmate::ui
