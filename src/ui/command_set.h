#pragma once

#include <QAction>
#include <QHash>
#include <QMainWindow>
#include <QMenu>
#include <QPoint>
#include <QToolBar>

#include "command_table.h"

namespace quillmate::ui {

/// Menus, toolbar `tobSymb1` and context menus of the window, built from the command tables.
class CommandSet : public QObject {
  Q_OBJECT

 public:
  explicit CommandSet(QMainWindow& window);

  /// Switches every entry on or off for a mode (0 no project; 1, 2 project loaded). Other modes change nothing.
  void SetMode(int mode);

  QAction& Item(CommandId command) const { return *items_[command]; }
  QAction& Button(ButtonId button) const { return *buttons_[button]; }
  QToolBar& ToolBar() const { return *toolBar_; }

  /// A context menu ready to be shown: an entry is on when its command is.
  QMenu& PreparePopup(PopupId popup);
  /// Shows it.
  void ShowPopup(PopupId popup, const QPoint& globalPosition);
  /// The entry of a context menu that stands for a command.
  QAction& PopupItem(PopupId popup, CommandId command) const;

 signals:
  /// The user gives a command. The mark of a switch is its handler's to set.
  void Triggered(CommandId command);

 private:
  void BuildMenus(QMainWindow& window);
  void BuildToolBar(QMainWindow& window);
  void BuildPopups(QMainWindow& window);
  QAction* MakeItem(const Command& command, QObject* parent);

  QToolBar* toolBar_ = nullptr;
  QHash<CommandId, QAction*> items_;
  QHash<ButtonId, QAction*> buttons_;
  QHash<MenuId, QMenu*> menus_;
  QHash<PopupId, QMenu*> popups_;
};

}  // namespace quillmate::ui
