#pragma once

#include <QDockWidget>

namespace quillmate::ui {

/// A panel below the code. Esc in one of its watched controls closes it and goes back to the code.
class Panel : public QDockWidget {
  Q_OBJECT

 public:
  Panel(const char* name, const QString& title);

 signals:
  /// The user goes back to the code.
  void Left();

 protected:
  /// Puts the controls of the panel in one column.
  void Fill(std::initializer_list<QWidget*> rows);
  /// Its keys are the panel's, too.
  void Watch(QWidget& control) { control.installEventFilter(this); }
  /// A key in a watched control; false leaves it to the control.
  virtual bool TakeKey(QObject& control, int key);
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Enter, on either part of the keyboard.
constexpr bool IsEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace quillmate::ui
