#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include <quillmate/ui/platform.h>

#include "inventory_job.h"

namespace quillmate::ui {

/// Asks which folders are to be looked through, and where the inventory is.
class InventoryChoice : public QDialog {
  Q_OBJECT

 public:
  /// `database`: to begin with; may be empty.
  InventoryChoice(QWidget* parent, Platform& platform, const QString& database, const QString& startFolder);

  InventoryOrder Order() const;
  void AddFolder(const QString& folder);

 private:
  QWidget* MakeFolders();
  QWidget* MakeDatabase(const QString& database);
  void Judge();

  Platform& platform_;
  const QString startFolder_;
  QListWidget* folders_;
  QLineEdit* exclude_;
  QLineEdit* database_;
  QPushButton* ok_;
};

}  // namespace quillmate::ui
