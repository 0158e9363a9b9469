#include "list_job.h"

#include <exception>
#include <system_error>
#include <utility>

#include "error_text.h"
#include "qt_text.h"

namespace quillmate::ui {

ListJob::ListJob(Work work, QObject* parent) : QObject(parent), work_(std::move(work)) {}

ListJob::~ListJob() {
  Cancel();
  Wait();
}

void ListJob::Wait() {
  if (thread_.joinable()) thread_.join();
}

void ListJob::Start() {
  const auto run = [this] {
    Run();
    QMetaObject::invokeMethod(this, &ListJob::TakeOver, Qt::QueuedConnection);
  };
  try {
    thread_ = std::thread(run);
  } catch (const std::system_error&) {
    run();
  }
}

void ListJob::Run() noexcept {
  try {
    work_(cancelled_);
  } catch (const std::exception& error) {
    error_ = FromUtf8(ErrorText(error));
  } catch (...) {
    error_ = QStringLiteral("Unbekannter Fehler");
  }
}

void ListJob::TakeOver() {
  Wait();
  emit Finished(error_);
  deleteLater();
}

}  // namespace quillmate::ui
