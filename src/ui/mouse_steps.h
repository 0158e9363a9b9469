#pragma once

#include <QCoreApplication>
#include <QMouseEvent>
#include <QObject>
#include <QWidget>

#include "command_set.h"

namespace quillmate::ui {

/// The two extra buttons of a mouse, wherever in the window they are pressed.
class MouseSteps : public QObject {
 public:
  MouseSteps(QWidget& window, CommandSet& commands) : QObject(&window), window_(window), commands_(commands) {
    QCoreApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The second of two quick presses comes as a double click.
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick) return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != &window_) return false;
    const Qt::MouseButton button = static_cast<QMouseEvent*>(event)->button();
    if (button != Qt::BackButton && button != Qt::ForwardButton) return false;
    commands_.Item(button == Qt::BackButton ? CommandId::kGoBack : CommandId::kGoNext).trigger();
    return true;
  }

 private:
  QWidget& window_;
  CommandSet& commands_;
};

}  // namespace quillmate::ui
