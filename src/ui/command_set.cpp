#include "command_set.h"

#include <QKeySequence>
#include <QMenuBar>
#include <QToolBar>
#include <utility>

#include "icons.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kToolIconSize = 24;

/// Context items hold the name of their command.
constexpr const char* kCommandProperty = "command";

}  // namespace

CommandSet::CommandSet(QMainWindow& window, std::function<void(const Command&)> run) : run_(std::move(run)) {
  BuildMenus(window);
  BuildToolBar(window);
  BuildPopups(window);
}

QAction* CommandSet::MakeItem(const Command& command, QObject* parent) {
  auto* item = new QAction(FromUtf8(command.caption), parent);
  item->setObjectName(FromUtf8(command.id));
  item->setShortcut(QKeySequence(FromUtf8(command.shortcut)));
  if (*command.icon != '\0') item->setIcon(LoadIcon(FromUtf8(command.icon)));
  item->setCheckable(command.checkable);
  QObject::connect(item, &QAction::triggered, item, [this, &command, item] {
    // The mark is the handler's to set: a command that fails leaves it as it was.
    if (command.checkable) item->setChecked(!item->isChecked());
    run_(command);
  });
  items_.insert(item->objectName(), item);
  return item;
}

void CommandSet::BuildMenus(QMainWindow& window) {
  for (const Menu& row : Menus()) {
    QMenu* menu = window.menuBar()->addMenu(FromUtf8(row.caption));
    menu->setObjectName(FromUtf8(row.id));
    menu->menuAction()->setObjectName(menu->objectName());
    menus_.insert(menu->objectName(), menu);
    for (const Command& command : Commands()) {
      if (command.menu != row.id) continue;
      if (command.separatorBefore) menu->addSeparator();
      menu->addAction(MakeItem(command, &window));
    }
  }
  for (const Command& command : Commands()) {
    if (command.menu.empty()) MakeItem(command, &window);
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
    const Command* command = FindCommand(row.command);
    QAction* item = Item(command->id);
    button->setCheckable(command->checkable);
    QObject::connect(item, &QAction::toggled, button, &QAction::setChecked);
    QObject::connect(button, &QAction::triggered, button, [this, command, button, item] {
      button->setChecked(item->isChecked());
      run_(*command);
    });
    buttons_.insert(button->objectName(), button);
  }
}

void CommandSet::BuildPopups(QMainWindow& window) {
  for (const ContextItem& row : ContextItems()) {
    QMenu*& popup = popups_[FromUtf8(row.popup)];
    if (popup == nullptr) {
      popup = new QMenu(&window);
      popup->setObjectName(FromUtf8(row.popup));
    }
    QMenu* menu = popup;
    if (*row.submenu != '\0') {
      const QList<QAction*> last = popup->actions();
      const bool open = !last.isEmpty() && last.back()->text() == FromUtf8(row.submenu);
      menu = open ? last.back()->menu() : popup->addMenu(FromUtf8(row.submenu));
    }
    QAction* item = menu->addAction(FromUtf8(row.caption));
    item->setObjectName(FromUtf8(row.id));
    item->setProperty(kCommandProperty, FromUtf8(row.command));
    const Command* command = FindCommand(row.command);
    QObject::connect(item, &QAction::triggered, item, [this, command] { run_(*command); });
  }
}

void CommandSet::SetMode(int mode) {
  if (mode < 0 || mode > 2) return;
  const unsigned bit = mode == 0 ? kNoProject : kWithProject;
  for (const Menu& menu : Menus()) menus_.value(FromUtf8(menu.id))->setEnabled((menu.modes & bit) != 0);
  for (const Command& command : Commands()) {
    if (command.modes != kBySituation) Item(command.id)->setEnabled((command.modes & bit) != 0);
  }
  for (const ToolButton& button : ToolButtons()) {
    if (button.modes != kBySituation) Button(button.key)->setEnabled((button.modes & bit) != 0);
  }
}

QAction* CommandSet::Item(std::string_view command) const { return items_.value(FromUtf8(command)); }

QAction* CommandSet::Button(std::string_view key) const {
  const ToolButton* row = FindToolButton(key);
  return row == nullptr ? nullptr : buttons_.value(FromUtf8(row->key));
}

QMenu& CommandSet::PreparePopup(std::string_view popup) {
  QMenu* menu = popups_.value(FromUtf8(popup));
  for (QAction* item : menu->findChildren<QAction*>()) {
    const QAction* command = items_.value(item->property(kCommandProperty).toString());
    if (command != nullptr) item->setEnabled(command->isEnabled());
  }
  return *menu;
}

void CommandSet::Popup(std::string_view popup, const QPoint& globalPosition) {
  PreparePopup(popup).popup(globalPosition);
}

}  // namespace quillmate::ui
