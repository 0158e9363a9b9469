#include "compare_job.h"

#include <QLocale>
#include <utility>

namespace quillmate::ui {

CompareJob::CompareJob(project::CompareRequest request, QObject* parent)
    : QObject(parent), request_(std::move(request)), job_([this](BackgroundJob&) { Run(); }) {
  connect(&job_, &BackgroundJob::Finished, this, &CompareJob::Finished);
}

CompareJob::~CompareJob() { Cancel(); }

void CompareJob::Run() {
  /// However it ends, nothing is read any more.
  struct End {
    project::CompareProgress& progress;
    ~End() {
      progress.stage = project::CompareProgress::kDone;
      progress.stage.notify_all();
    }
  };
  const End end{progress_};
  auto made = std::make_shared<project::ComparedProjects>();
  if (project::CompareProjects(request_, progress_, *made)) result_ = std::move(made);
}

void CompareJob::FinishReading() {
  using Progress = project::CompareProgress;
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
