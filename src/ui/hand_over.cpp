#include "hand_over.h"

#include <QDateTime>
#include <exception>
#include <utility>

#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>

#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

constexpr int kTellEvery = 100;

/// A place in a folder that nothing has yet: "Lager Übergabe", "Lager Übergabe (2)".
fs::path FreeName(const fs::path& folder, const std::string& name) {
  fs::path free = folder / files::PathFromText(name);
  std::error_code ignored;
  for (int number = 2; fs::exists(fs::symlink_status(free, ignored)); ++number) {
    free = folder / files::PathFromText(name + " (" + std::to_string(number) + ")");
  }
  return free;
}

}  // namespace

HandOver::HandOver(QWidget& window, const ListDesk& desk, codedb::CodeDatabase& database, Exports& exports,
                   PrintCommands& printing)
    : window_(window), desk_(desk), database_(database), exports_(exports), printing_(printing) {
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, &HandOver::ShowProgress);
}

void HandOver::Ask(std::shared_ptr<const project::Understanding> known) {
  if (job_ != nullptr) {
    desk_.interaction.ShowProgress(job_->IsCancelled() ? "Die Übergabe wird noch abgebrochen."
                                                       : "Eine Übergabe wird schon erzeugt.");
    if (progress_ != nullptr) progress_->activateWindow();
    return;
  }
  known_ = std::move(known);
  auto* dialog = new HandOverDialog(&window_, choice_);
  connect(dialog, &HandOverDialog::Chosen, this, [this](const HandOverChoice& choice) {
    choice_ = choice;
    desk_.interaction.Guarded([this, choice] {
      if (desk_.session.IsLoaded()) Run(choice);
    });
  });
  connect(dialog, &QDialog::finished, this, [this](int result) {
    if (result == QDialog::Rejected) known_.reset();
  });
  dialog->open();
}

fs::path HandOver::ChooseTarget(bool zipped) {
  const QString start = FromUtf8(desk_.globals.LastProjectFolder);
  const std::string name = files::CleanName(desk_.session.Name() + " Übergabe");
  if (zipped) {
    return ToPath(SaveFileDialog(desk_.interaction, QStringLiteral("zip"), "Zip-Datei:zip;", start, FromUtf8(name)));
  }
  const QString chosen =
      desk_.interaction.Desktop().ChooseFolder(QStringLiteral("Bitte Ordner für die Übergabe auswählen"), start);
  return chosen.isEmpty() ? fs::path() : FreeName(ToPath(chosen), name);
}

void HandOver::Run(const HandOverChoice& choice) {
  // What was understood belongs to the project that was loaded when the command was given.
  const std::shared_ptr<const project::Understanding> held = std::exchange(known_, nullptr);
  const fs::path target = ChooseTarget(choice.zipped);
  if (target.empty()) return;
  desk_.readFiles.Check({target});
  auto job = std::make_unique<HandOverJob>(choice, target, this);
  {
    const Working working(desk_.interaction);
    HandOverOrder order = OrderFor(choice);
    order.known = held;
    order.site = exports_.SiteOf(*held);
    CopyProject(job->CopyFolder());
    job->Start(std::move(order));
  }
  job_ = job.release();
  connect(job_, &HandOverJob::Finished, this, &HandOver::TakeResult);
  progress_ = new QProgressDialog(QString(), QStringLiteral("Abbrechen"), 0, 100, &window_);
  progress_->setObjectName(QStringLiteral("frmUebergabeFortschritt"));
  progress_->setWindowTitle(QStringLiteral("Übergabe"));
  progress_->setAutoReset(false);
  progress_->setAutoClose(false);
  progress_->setMinimumWidth(40 * progress_->fontMetrics().averageCharWidth());
  connect(progress_, &QProgressDialog::canceled, job_, &HandOverJob::Cancel);
  ShowProgress();
  progress_->show();
  clock_.start();
}

HandOverOrder HandOver::OrderFor(const HandOverChoice& choice) {
  HandOverOrder order;
  order.choice = choice;
  order.title = desk_.session.Name();
  order.time = ToUtf8(QDateTime::currentDateTime().toString(QStringLiteral("dd.MM.yyyy, HH:mm")));
  if (notes_) order.notes = notes_();
  order.look = settings::LookOf(desk_.globals.Options);
  order.moduleCount = desk_.session.Views().Count();
  if (choice.pdf) order.pdf = printing_.WholeProject();
  return order;
}

void HandOver::CopyProject(const fs::path& folder) {
  emit AboutToCopy();
  const fs::path source = desk_.session.Files();
  database_.CloseCodeDatabase();
  std::exception_ptr failure;
  try {
    codedb::CopyAllFiles(source, folder);
  } catch (...) {
    failure = std::current_exception();
  }
  database_.OpenCodeDatabase(source);
  if (failure) std::rethrow_exception(failure);
}

void HandOver::ShowProgress() {
  if (job_ == nullptr || progress_ == nullptr) return;
  int percent = 0;
  progress_->setLabelText(job_->StatusText(percent));
  progress_->setValue(percent);
}

void HandOver::TakeResult() {
  clock_.stop();
  delete progress_;
  const std::string error = job_->Error();
  const bool isMade = job_->IsMade();
  const fs::path target = job_->Target();
  job_ = nullptr;
  if (!error.empty()) {
    desk_.interaction.GuardedInTurn([this, error] { desk_.interaction.Show(error, MessageIcon::kExclamation); });
  } else if (!isMade) {
    desk_.interaction.ShowProgress("Die Übergabe wurde abgebrochen.");
  } else {
    desk_.interaction.GuardedInTurn([this, target] {
      desk_.interaction.Show("Die Übergabe steht in\r\n" + files::PathText(target), MessageIcon::kInformation);
    });
  }
}

}  // namespace quillmate::ui
