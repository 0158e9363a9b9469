#pragma once

#include <span>
#include <string_view>

/// Every command of the main window as data: menus, toolbar and context menus are built from these tables, and the
/// mode of the window switches their entries on and off.
namespace quillmate::ui {

class Shell;

using Handler = void (*)(Shell&);

/// In which modes of the window an entry is on.
enum Modes : unsigned {
  kBySituation = 0,  // neither: switched by whoever knows the situation
  kNoProject = 1,    // mode 0
  kWithProject = 2,  // modes 1 and 2
  kAlways = kNoProject | kWithProject
};

struct Menu {
  std::string_view id;
  const char* caption;
  unsigned modes = kAlways;
};

struct Command {
  /// Name of the menu item and of its QAction.
  std::string_view id;
  /// The menu that shows it; empty for a command that only a context menu shows.
  std::string_view menu;
  const char* caption;
  /// As QKeySequence reads it; empty for none.
  const char* shortcut;
  /// Image key; empty for none.
  const char* icon;
  unsigned modes;
  bool separatorBefore;
  Handler run;
  /// A switch: its handler sets the check mark; the toolbar button shows the same.
  bool checkable = false;
};

struct ToolButton {
  /// Key of the button, image key and name of its QAction. Keys compare without regard to case.
  std::string_view key;
  const char* tooltip;
  std::string_view command;
  unsigned modes;
  bool separatorBefore;
};

struct ContextItem {
  /// Name of the popup and of the item in it.
  std::string_view popup;
  std::string_view id;
  const char* caption;
  std::string_view command;
  /// Title of the submenu that holds the item; empty for the popup itself. Items of a submenu follow one another.
  const char* submenu;
};

std::span<const Menu> Menus();
std::span<const Command> Commands();
std::span<const ToolButton> ToolButtons();
std::span<const ContextItem> ContextItems();

/// The command of that name; null when there is none.
const Command* FindCommand(std::string_view id);
/// The button with that key in any case; null when there is none.
const ToolButton* FindToolButton(std::string_view key);

}  // namespace quillmate::ui
