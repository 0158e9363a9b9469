#include "inventory_commands.h"

#include <QCoreApplication>

#include <quillmate/inventory/inventory.h>

#include "qt_text.h"

namespace quillmate::ui {

InventoryWindow& InventoryCommands::Show() {
  auto* shown = window_.findChild<InventoryWindow*>(QString(), Qt::FindDirectChildrenOnly);
  if (shown == nullptr) {
    // The program of the command line is beside that of the window.
    shown = new InventoryWindow(&window_, desk_, ToPath(QCoreApplication::applicationDirPath()));
    connect(shown, &InventoryWindow::FileChosen, this, &InventoryCommands::FileChosen);
  }
  shown->show();
  shown->raise();
  shown->activateWindow();
  return *shown;
}

bool InventoryCommands::TakeDropped(const QStringList& files) {
  if (files.size() != 1 || !inventory::Inventory::IsInventory(ToPath(files.front()))) return false;
  Show().Open(ToPath(files.front()));
  return true;
}

void InventoryCommands::CloseAll() {
  delete window_.findChild<InventoryWindow*>(QString(), Qt::FindDirectChildrenOnly);
}

}  // namespace quillmate::ui
