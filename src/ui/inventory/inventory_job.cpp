#include "inventory_job.h"

#include <QLocale>
#include <utility>

#include <quillmate/startup/edition.h>

namespace quillmate::ui {

InventoryJob::InventoryJob(InventoryOrder order, const std::filesystem::path& programFolder, QObject* parent)
    : QObject(parent),
      order_(std::move(order)),
      job_([this](BackgroundJob&) { result_ = inventory::Scan(order_.database, options_); }) {
  options_.roots = order_.roots;
  options_.exclude = order_.exclude;
  options_.readerCommand = inventory::ReaderCommand(programFolder);
  options_.program = "Quillmate " + startup::ProgramVersion();
  options_.cancelled = &cancelled_;
  options_.progress = [this](const inventory::ScanProgress& progress) {
    const std::lock_guard lock(mutex_);
    progress_ = progress;
  };
  connect(&job_, &BackgroundJob::Finished, this, &InventoryJob::Finished);
}

InventoryJob::~InventoryJob() { Cancel(); }

QString InventoryJob::StatusText(int& percent) const {
  inventory::ScanProgress now;
  {
    const std::lock_guard lock(mutex_);
    now = progress_;
  }
  const QLocale numbers;
  if (cancelled_) return QStringLiteral("Wird abgebrochen ...");
  std::int64_t rest = now.waiting;
  if (!now.listed && now.expected > now.found) rest += now.expected - now.found;
  const std::int64_t all = now.read + rest;
  percent = (now.listed || now.expected > 0) && all > 0 ? static_cast<int>(now.read * 100 / all) : -1;
  QString text =
      QStringLiteral("Dateien: %1, gelesen: %2").arg(numbers.toString(now.found), numbers.toString(now.read));
  const std::int64_t rate = now.time.count() > 0 ? now.read * 1000 / now.time.count() : 0;
  if (rate > 0) text += QStringLiteral(", %1 je Sekunde").arg(numbers.toString(rate));
  if (rest > 0) text += QStringLiteral(", noch %1").arg(numbers.toString(rest));
  return text;
}

QString InventoryJob::ResultText() const {
  const QLocale numbers;
  const auto number = [&numbers](std::int64_t value) { return numbers.toString(static_cast<qlonglong>(value)); };
  if (result_.cancelled) return QStringLiteral("Abgebrochen; der nächste Lauf macht weiter.");
  return QStringLiteral("Dateien: %1, gelesen: %2, unverändert: %3, verschwunden: %4")
      .arg(number(result_.found), number(result_.read), number(result_.unchanged), number(result_.vanished));
}

}  // namespace quillmate::ui
