#include "compare_job.h"

#include <QLocale>
#include <exception>
#include <system_error>
#include <utility>

#include "error_text.h"

namespace quillmate::ui {

CompareJob::CompareJob(project::CompareRequest request, QObject* parent)
    : QObject(parent), request_(std::move(request)) {}

CompareJob::~CompareJob() {
  Cancel();
  if (thread_.joinable()) thread_.join();
}

void CompareJob::Start() {
  const auto run = [this] {
    Run();
    QMetaObject::invokeMethod(this, &CompareJob::TakeOver, Qt::QueuedConnection);
  };
  try {
    thread_ = std::thread(run);
  } catch (const std::system_error&) {
    run();
  }
}

void CompareJob::Run() noexcept {
  try {
    auto made = std::make_shared<project::ComparedProjects>();
    if (project::CompareProjects(request_, progress_, *made)) result_ = std::move(made);
  } catch (const std::exception& error) {
    error_ = ErrorText(error);
  } catch (...) {
    error_ = "Unbekannter Fehler";
  }
  // What was thrown before anything was read.
  progress_.stage = project::CompareProgress::kDone;
  progress_.stage.notify_all();
}

void CompareJob::TakeOver() {
  if (thread_.joinable()) thread_.join();
  isDone_ = true;
  emit Finished();
}

void CompareJob::FinishReading() {
  using Progress = project::CompareProgress;
  if (!thread_.joinable()) return;
  for (auto stage = progress_.stage.load(); stage < Progress::kCompares; stage = progress_.stage.load()) {
    progress_.stage.wait(stage);
  }
}

QString CompareJob::StatusText() const {
  const auto reads = [this](const char* which) {
    const QString text = QStringLiteral("Lese den %1 Stand").arg(QString::fromLatin1(which));
    const std::size_t modules = progress_.modules;
    return modules == 0 ? text + QStringLiteral(" ...")
                        : text + QStringLiteral(": Modul %1").arg(QLocale().toString(modules));
  };
  if (progress_.cancelled) return QStringLiteral("Wird abgebrochen ...");
  switch (progress_.stage.load()) {
    case project::CompareProgress::kReadsOld:
      return reads("alten");
    case project::CompareProgress::kReadsNew:
      return reads("neuen");
    default:
      return QStringLiteral("Vergleiche ...");
  }
}

}  // namespace quillmate::ui
