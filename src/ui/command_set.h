#pragma once

#include <QAction>
#include <QHash>
#include <QMainWindow>
#include <QMenu>
#include <QPoint>
#include <QToolBar>
#include <functional>
#include <string_view>

#include "command_table.h"

namespace quillmate::ui {

/// Menus, toolbar `tobSymb1` and context menus of the window, built from the command tables.
class CommandSet {
 public:
  /// `run` gets each command that the user gives.
  CommandSet(QMainWindow& window, std::function<void(const Command&)> run);

  /// Switches every entry on or off for a mode (0 no project; 1, 2 project loaded). Other modes change nothing.
  void SetMode(int mode);

  /// The menu item of a command and the button of a toolbar key; null when there is none.
  QAction* Item(std::string_view command) const;
  QAction* Button(std::string_view key) const;
  QToolBar& ToolBar() const { return *toolBar_; }

  /// A context menu ready to be shown: an entry is on when its command is.
  QMenu& PreparePopup(std::string_view popup);
  /// Shows it.
  void Popup(std::string_view popup, const QPoint& globalPosition);

 private:
  void BuildMenus(QMainWindow& window);
  void BuildToolBar(QMainWindow& window);
  void BuildPopups(QMainWindow& window);
  QAction* MakeItem(const Command& command, QObject* parent);

  std::function<void(const Command&)> run_;
  QToolBar* toolBar_ = nullptr;
  QHash<QString, QAction*> items_;
  QHash<QString, QAction*> buttons_;
  QHash<QString, QMenu*> menus_;
  QHash<QString, QMenu*> popups_;
};

}  // namespace quillmate::ui
