#include "background_job.h"

#include <system_error>
#include <utility>

#include "error_text.h"
#include "qt_text.h"

namespace quillmate::ui {

BackgroundJob::BackgroundJob(Work work, QObject* parent) : QObject(parent), work_(std::move(work)) {}

BackgroundJob::~BackgroundJob() {
  Cancel();
  Wait();
}

void BackgroundJob::Start() {
  const auto run = [this] {
    Run();
    QMetaObject::invokeMethod(this, &BackgroundJob::TakeOver, Qt::QueuedConnection);
  };
  try {
    thread_ = std::thread(run);
  } catch (const std::system_error&) {
    run();
  }
}

void BackgroundJob::Run() noexcept {
  try {
    work_(*this);
    isMade_ = true;
  } catch (const Cancelled&) {
    // Nobody waits for it any more.
  } catch (const std::exception& error) {
    error_ = ErrorText(error);
  } catch (...) {
    error_ = "Unbekannter Fehler";
  }
  // What it holds may be large; freeing it must not hold up the window.
  work_ = nullptr;
  EndReading();
}

void BackgroundJob::TakeOver() {
  Wait();
  isDone_ = true;
  emit Finished();
}

void BackgroundJob::Wait() {
  if (thread_.joinable()) thread_.join();
}

void BackgroundJob::FinishReading() const {
  if (thread_.joinable()) hasRead_.wait(false);
}

void BackgroundJob::EndReading() {
  hasRead_ = true;
  hasRead_.notify_all();
}

void BackgroundJob::Begin(std::string step) {
  {
    const std::lock_guard lock(mutex_);
    step_ = std::move(step);
    percent_ = -1;
  }
  if (cancelled_) throw Cancelled();
}

void BackgroundJob::Tell(std::size_t done, std::size_t total) {
  {
    const std::lock_guard lock(mutex_);
    percent_ = total == 0 ? 0 : static_cast<int>(done * 100 / total);
  }
  if (cancelled_) throw Cancelled();
}

QString BackgroundJob::StatusText(int& percent) const {
  const std::lock_guard lock(mutex_);
  percent = percent_;
  return cancelled_ ? QStringLiteral("Wird abgebrochen ...") : FromUtf8(step_);
}

}  // namespace quillmate::ui
