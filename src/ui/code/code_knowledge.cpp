#include "code_knowledge.h"

#include <QApplication>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Short work is not worth a word.
constexpr int kTellEvery = 250;

}  // namespace

CodeKnowledge::CodeKnowledge(project::Session& session, symbols::Host assumed) : session_(session), assumed_(assumed) {
  setObjectName(QStringLiteral("Verständnis"));
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, [this] {
    // What a command is at is more important.
    if (QApplication::overrideCursor() != nullptr) return;
    hasTold_ = true;
    emit StatusChanged(QStringLiteral("Untersuche den Code: %1 %").arg(Percent()));
  });
}

void CodeKnowledge::Start() {
  Drop();
  progress_ = std::make_shared<project::UnderstandingProgress>();
  const project::UnderstandingRequest request{session_.Folder(), session_.Texts().Time(), assumed_};
  const auto made = std::make_shared<std::shared_ptr<const project::Understanding>>();
  job_ = std::make_unique<BackgroundJob>([request, made, progress = progress_](BackgroundJob& job) {
    progress->readingEnded = [&job] { job.EndReading(); };
    *made = MakeUnderstanding(request, *progress);
  });
  connect(job_.get(), &BackgroundJob::Finished, this, [this, made] {
    made_ = std::move(*made);
    TakeOver();
  });
  clock_.start();
  job_->Start();
}

void CodeKnowledge::Drop() {
  clock_.stop();
  if (progress_ != nullptr) progress_->cancelled = true;
  job_.reset();
  progress_.reset();
  made_.reset();
  error_.clear();
}

void CodeKnowledge::FinishReading() const {
  if (job_ != nullptr) job_->FinishReading();
}

void CodeKnowledge::TakeOver() {
  clock_.stop();
  error_ = job_->Error();
  // It is what calls this.
  job_.release()->deleteLater();
  progress_.reset();
  if (std::exchange(hasTold_, false)) emit StatusChanged({});
  emit Arrived();
}

int CodeKnowledge::Percent() const {
  if (progress_ == nullptr) return 0;
  const std::size_t steps = progress_->steps;
  return steps == 0 ? 0 : static_cast<int>(progress_->done * 100 / steps);
}

QString CodeKnowledge::MissingText() const {
  if (IsOnTheWay()) {
    return QStringLiteral("Der Code wird noch untersucht (%1 %). Bitte gleich noch einmal.").arg(Percent());
  }
  if (!session_.IsLoaded()) return QStringLiteral("Es ist kein Projekt geladen.");
  const QString reason = FromUtf8(error_).simplified();
  return reason.isEmpty() ? QStringLiteral("Der Code konnte nicht untersucht werden.")
                          : QStringLiteral("Der Code konnte nicht untersucht werden: ") + reason;
}

}  // namespace quillmate::ui
