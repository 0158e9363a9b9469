#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <memory>

#include "inventory_job.h"
#include "inventory_model.h"
#include "table_file.h"

namespace quillmate::ui {

/// The inventory of whole shares: its files with filter and search, what is known of each, reports; and the scan that
/// brings it up to date. Deletes itself when it is closed; a scan ends then and keeps what it has read.
class InventoryWindow : public QDialog {
  Q_OBJECT

 public:
  /// `programFolder`: where the program is that reads for a scan.
  InventoryWindow(QWidget* parent, const ListDesk& desk, std::filesystem::path programFolder);
  ~InventoryWindow() override;

  /// Shows an inventory that is there; tells when it can't be read.
  void Open(const std::filesystem::path& database);
  void Scan(const InventoryOrder& order);
  bool IsScanning() const { return job_ != nullptr; }
  const ListDesk& Desk() const noexcept { return desk_; }

 signals:
  /// A file is to be read as a project.
  void FileChosen(const QString& path);

 private:
  QWidget* MakeFilters();
  QWidget* MakeLists();
  QWidget* MakeProgress();
  QWidget* MakeButtons();

  void ChooseDatabase();
  void ChooseFolders();
  void TakeResult();
  void ApplyFilter();
  void TellProblems(const std::vector<std::string>& problems);
  /// `introduce`: says what an inventory is while none is shown.
  void ShowState(bool introduce = true);
  void ShowDetails();
  void FitDetails();
  void ChooseFile(const QModelIndex& index);
  void WriteReport();
  void WriteWorkbook();
  QString AskReport(const QString& extension, const char* filter);

  ListDesk desk_;
  const std::filesystem::path programFolder_;
  std::filesystem::path database_;
  std::unique_ptr<InventoryJob> job_;
  QTimer clock_, typed_;

  QLabel* overview_;
  QComboBox* question_;
  QLineEdit* search_;
  QLabel* count_;
  InventoryModel* model_;
  QTreeView* files_;
  QTreeWidget* details_;
  QLabel* status_;
  QProgressBar* bar_;
  QWidget* progress_;
  QPushButton* open_;
  QPushButton* scan_;
  QPushButton* report_;
  QPushButton* workbook_;
};

}  // namespace quillmate::ui
