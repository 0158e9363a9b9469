#pragma once

#include <QDockWidget>
#include <QLayout>
#include <QPushButton>

namespace quillmate::ui {

/// A panel below the code. Esc in one of its watched controls closes it and goes back to the code.
class Panel : public QDockWidget {
  Q_OBJECT

 public:
  Panel(const char* name, const QString& title);

 signals:
  /// The user goes back to the code.
  void Left();
  /// The list of the panel is to be handed on.
  void CopyWanted();
  void SaveWanted();

 protected:
  /// Puts the controls of the panel in one column.
  void Fill(std::initializer_list<QWidget*> rows);
  /// Buttons that hand the panel's list on, for a panel that has one.
  void AddListButtons(QLayout& bar, const char* copyName, const char* saveName);
  void EnableListButtons(bool on);
  /// Its keys are the panel's, too.
  void Watch(QWidget& control) { control.installEventFilter(this); }
  /// A key in a watched control; false leaves it to the control.
  virtual bool TakeKey(QObject& control, int key);
  /// What nothing in it takes: Esc closes it from wherever the keys are.
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPushButton* copy_ = nullptr;
  QPushButton* save_ = nullptr;
};

/// Enter, on either part of the keyboard.
constexpr bool IsEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace quillmate::ui
