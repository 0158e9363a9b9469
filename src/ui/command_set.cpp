#include "command_set.h"

#include <QKeySequence>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>

#include "icons.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kToolIconSize = 24;

CommandId CommandOf(const QAction& popupItem) { return static_cast<CommandId>(popupItem.data().toInt()); }

/// Those of submenus, too.
QList<QAction*> ItemsOf(const QMenu& popup) {
  QList<QAction*> items;
  for (QAction* item : popup.findChildren<QAction*>()) {
    if (item->data().isValid()) items.append(item);
  }
  return items;
}

}  // namespace

CommandSet::CommandSet(QMainWindow& window) : QObject(&window) {
  BuildMenus(window);
  BuildToolBar(window);
  BuildPopups(window);
}

QAction* CommandSet::MakeItem(const Command& command, QObject* parent) {
  auto* item = new QAction(FromUtf8(command.caption), parent);
  item->setObjectName(FromUtf8(command.name));
  item->setShortcut(QKeySequence(FromUtf8(command.shortcut)));
  if (*command.icon != '\0') item->setIcon(LoadIcon(FromUtf8(command.icon)));
  item->setCheckable(command.checkable);
  connect(item, &QAction::triggered, this, [this, &command, item] {
    // A command that fails leaves its mark as it was.
    if (command.checkable) item->setChecked(!item->isChecked());
    emit Triggered(command.id);
  });
  items_.insert(command.id, item);
  return item;
}

void CommandSet::BuildMenus(QMainWindow& window) {
  for (const Menu& row : Menus()) {
    QMenu* menu = window.menuBar()->addMenu(FromUtf8(row.caption));
    menu->setObjectName(FromUtf8(row.name));
    menu->menuAction()->setObjectName(menu->objectName());
    menus_.insert(row.id, menu);
    for (const Command& command : Commands()) {
      if (command.menu != row.id) continue;
      if (command.separatorBefore) menu->addSeparator();
      menu->addAction(MakeItem(command, &window));
    }
  }
  for (const Command& command : Commands()) {
    if (command.menu == MenuId::kNone) MakeItem(command, &window);
  }
}

void CommandSet::BuildToolBar(QMainWindow& window) {
  QToolBar* bar = window.addToolBar(QStringLiteral("Symbolleiste"));
  toolBar_ = bar;
  bar->setObjectName(QStringLiteral("tobSymb1"));
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  bar->setIconSize(QSize(kToolIconSize, kToolIconSize));
  for (const ToolButton& row : ToolButtons()) {
    if (row.separatorBefore) bar->addSeparator();
    QAction* button = bar->addAction(LoadIcon(FromUtf8(row.key)), FromUtf8(row.tooltip));
    button->setObjectName(FromUtf8(row.key));
    QAction* item = &Item(row.command);
    button->setCheckable(item->isCheckable());
    connect(item, &QAction::toggled, button, &QAction::setChecked);
    connect(button, &QAction::triggered, this, [this, &row, button, item] {
      button->setChecked(item->isChecked());
      emit Triggered(row.command);
    });
    buttons_.insert(row.id, button);
  }
}

void CommandSet::BuildPopups(QMainWindow& window) {
  for (const Popup& row : Popups()) {
    auto* popup = new QMenu(&window);
    popup->setObjectName(FromUtf8(row.name));
    popups_.insert(row.id, popup);
  }
  for (const ContextItem& row : ContextItems()) {
    QMenu* popup = popups_[row.popup];
    QMenu* menu = popup;
    if (*row.submenu != '\0') {
      const QList<QAction*> last = popup->actions();
      const bool open = !last.isEmpty() && last.back()->text() == FromUtf8(row.submenu);
      menu = open ? last.back()->menu() : popup->addMenu(FromUtf8(row.submenu));
    }
    QAction* item = menu->addAction(FromUtf8(row.caption));
    item->setObjectName(FromUtf8(row.name));
    item->setData(static_cast<int>(row.command));
    connect(item, &QAction::triggered, this, [this, &row] { emit Triggered(row.command); });
  }
}

void CommandSet::SetMode(int mode) {
  if (mode < 0 || mode > 2) return;
  const unsigned bit = mode == 0 ? kNoProject : kWithProject;
  const auto isOn = [bit](unsigned modes) { return (modes & bit) != 0; };
  for (const Menu& menu : Menus()) menus_[menu.id]->setEnabled(isOn(menu.modes));
  for (const Command& command : Commands()) {
    if (command.modes != kBySituation) Item(command.id).setEnabled(isOn(command.modes));
  }
  for (const ToolButton& button : ToolButtons()) {
    if (button.modes != kBySituation) Button(button.id).setEnabled(isOn(button.modes));
  }
}

QMenu& CommandSet::PreparePopup(PopupId popup) {
  QMenu& menu = *popups_[popup];
  for (QAction* item : ItemsOf(menu)) item->setEnabled(Item(CommandOf(*item)).isEnabled());
  return menu;
}

void CommandSet::ShowPopup(PopupId popup, const QPoint& globalPosition) { PreparePopup(popup).popup(globalPosition); }

QAction& CommandSet::PopupItem(PopupId popup, CommandId command) const {
  const QList<QAction*> items = ItemsOf(*popups_[popup]);
  return **std::ranges::find_if(items, [command](const QAction* item) { return CommandOf(*item) == command; });
}

}  // namespace quillmate::ui
