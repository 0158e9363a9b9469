#pragma once

#include <QObject>
#include <QStringList>

#include "inventory_window.h"
#include "table_file.h"

namespace quillmate::ui {

/// "Bestand ...": the window of the inventory of whole shares.
class InventoryCommands : public QObject {
  Q_OBJECT

 public:
  /// The window appears over `window`; everything must outlive it.
  InventoryCommands(QWidget& window, const ListDesk& desk) : window_(window), desk_(desk) {}

  /// Shows the window: the one that is there, or a new one.
  InventoryWindow& Show();
  /// An inventory that was dropped is opened; false for anything else.
  bool TakeDropped(const QStringList& files);
  /// The run ends: so does a scan.
  void CloseAll();

 signals:
  /// A file is to be read as a project.
  void FileChosen(const QString& path);

 private:
  QWidget& window_;
  const ListDesk desk_;
};

}  // namespace quillmate::ui
