#pragma once

#include <QAbstractTableModel>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/inventory/inventory.h>

namespace quillmate::ui {

/// The files of an inventory as a table that is asked for what is seen, page by page.
class InventoryModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  /// Throws files::Failure; shows what it showed before then.
  void Open(const std::filesystem::path& database);
  /// Nobody reads the file any more.
  void Close();
  void SetFilter(inventory::FileFilter filter);

  /// Null while nothing is open.
  inventory::Inventory* Stock() const noexcept { return stock_.get(); }
  std::int64_t NumberAt(int row) const { return LineAt(row).number; }
  /// Why rows could not be read; empty when all is well.
  const std::string& Problem() const noexcept { return problem_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void CountRows();
  const inventory::FileLine& LineAt(int row) const;

  std::unique_ptr<inventory::Inventory> stock_;
  inventory::FileFilter filter_;
  int rows_ = 0;
  mutable std::map<int, std::vector<inventory::FileLine>> pages_;
  mutable std::string problem_;
};

}  // namespace quillmate::ui
