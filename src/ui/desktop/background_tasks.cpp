#include "background_tasks.h"

#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kTellEvery = 100;
/// Short work is not worth a window.
constexpr int kShowAfter = 400;
constexpr int kWidth = 48;

}  // namespace

/// One task with its window.
class BackgroundTasks::Running : public QObject {
 public:
  Running(BackgroundTasks& tasks, Task task)
      : QObject(&tasks),
        title(std::move(task.title)),
        job(std::move(task.work)),
        dialog(new QProgressDialog(title, QStringLiteral("Abbrechen"), 0, 0, &tasks.window_)) {
    setObjectName(task.name);
    dialog->setObjectName(task.name);
    dialog->setWindowTitle(title);
    dialog->setAutoReset(false);
    dialog->setAutoClose(false);
    // Shown by the clock below, not by itself.
    dialog->setMinimumDuration(std::numeric_limits<int>::max());
    dialog->setMinimumWidth(kWidth * dialog->fontMetrics().averageCharWidth());
    // It hides itself; what can't be ended at once goes on without a window.
    connect(dialog, &QProgressDialog::canceled, this, [this] { job.Cancel(); });
    clock_.setInterval(kTellEvery);
    connect(&clock_, &QTimer::timeout, this, &Running::Tell);
    clock_.start();
    QTimer::singleShot(kShowAfter, this, [this] { ShowWindow(); });
  }

  ~Running() override { delete dialog; }

  void ShowWindow() {
    if (dialog == nullptr || job.IsCancelled()) return;
    Tell();
    dialog->show();
    dialog->raise();
  }
  void Tell() {
    // A reset bar would show itself again.
    if (dialog == nullptr || job.IsCancelled()) return;
    int percent = 0;
    const QString text = job.StatusText(percent);
    if (!text.isEmpty()) dialog->setLabelText(text);
    dialog->setMaximum(percent < 0 ? 0 : 100);
    dialog->setValue(std::max(percent, 0));
  }

  const QString title;
  BackgroundJob job;
  /// The window's, which may go first.
  QPointer<QProgressDialog> dialog;

 private:
  QTimer clock_;
};

BackgroundTasks::~BackgroundTasks() { GiveUp(); }

QList<BackgroundTasks::Running*> BackgroundTasks::All() const {
  QList<Running*> all;
  for (QObject* child : children()) all << static_cast<Running*>(child);
  return all;
}

bool BackgroundTasks::IsFree(const QString& name) {
  for (Running* running : All()) {
    if (running->objectName() != name) continue;
    interaction_.ShowProgress(ToUtf8(running->title) +
                              (running->job.IsCancelled() ? ": wird noch abgebrochen." : ": läuft schon."));
    running->ShowWindow();
    return false;
  }
  return true;
}

void BackgroundTasks::Start(Task task) {
  std::function<void()> done = std::move(task.done);
  auto* running = new Running(*this, std::move(task));
  connect(&running->job, &BackgroundJob::Finished, this, [this, running, done = std::move(done)] {
    const std::string error = running->job.Error();
    const bool isMade = running->job.IsMade();
    const QString title = running->title;
    // It is what calls this.
    running->setParent(nullptr);
    delete running->dialog;
    running->deleteLater();
    if (!error.empty()) {
      interaction_.GuardedInTurn([this, error] { interaction_.Show(error, MessageIcon::kExclamation); });
    } else if (!isMade) {
      interaction_.ShowProgress(ToUtf8(title) + ": abgebrochen.");
    } else if (done) {
      interaction_.GuardedInTurn(done);
    }
  });
  running->job.Start();
}

QStringList BackgroundTasks::Titles() const {
  QStringList titles;
  for (const Running* running : All()) titles << running->title;
  return titles;
}

void BackgroundTasks::FinishReading() const {
  for (const Running* running : All()) running->job.FinishReading();
}

void BackgroundTasks::GiveUp() {
  for (Running* running : All()) running->job.Cancel();
  qDeleteAll(All());
}

}  // namespace quillmate::ui
