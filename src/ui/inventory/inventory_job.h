#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include <quillmate/inventory/scan.h>

#include "background_job.h"

namespace quillmate::ui {

/// What a scan is to do.
struct InventoryOrder {
  std::filesystem::path database;
  std::vector<std::filesystem::path> roots;
  std::vector<std::string> exclude;
};

/// Brings an inventory up to date in a thread of its own.
class InventoryJob : public QObject {
  Q_OBJECT

 public:
  /// `programFolder`: where the program is that reads.
  InventoryJob(InventoryOrder order, const std::filesystem::path& programFolder, QObject* parent = nullptr);
  /// Ends the scan; what was read is kept.
  ~InventoryJob() override;

  void Start() { job_.Start(); }
  void Cancel() { cancelled_ = true; }

  bool IsDone() const noexcept { return job_.IsDone(); }
  const InventoryOrder& Order() const noexcept { return order_; }
  /// How far it is, for the user; percent is -1 while nobody can know.
  QString StatusText(int& percent) const;
  /// What came of it, for the user; `problems` are German lines.
  QString ResultText() const;
  const std::vector<std::string>& Problems() const noexcept { return result_.problems; }
  /// Why it failed; empty when it didn't.
  const std::string& Error() const noexcept { return job_.Error(); }

 signals:
  void Finished();

 private:
  const InventoryOrder order_;
  inventory::ScanOptions options_;
  std::atomic<bool> cancelled_ = false;
  mutable std::mutex mutex_;
  inventory::ScanProgress progress_;
  inventory::ScanResult result_;
  // The last member: what its thread writes to goes after it.
  BackgroundJob job_;
};

}  // namespace quillmate::ui
