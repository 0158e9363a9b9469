#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <functional>
#include <thread>

namespace quillmate::ui {

/// What a list shows, found in a thread of its own. Deletes itself after it has finished.
class ListJob : public QObject {
  Q_OBJECT

 public:
  /// Ends early, with whatever it has, when `cancelled` becomes true.
  using Work = std::function<void(const std::atomic<bool>& cancelled)>;

  ListJob(Work work, QObject* parent);
  /// Gives it up, and waits until the thread has ended.
  ~ListJob() override;

  /// Does the work now where no thread can be started; Finished comes later in any case.
  void Start();
  /// Ends it early; Finished still comes.
  void Cancel() noexcept { cancelled_ = true; }
  /// Returns when the thread has ended; Finished comes later.
  void Wait();

 signals:
  /// `error`: why there is nothing, for the user; empty when it was found.
  void Finished(const QString& error);

 private:
  void Run() noexcept;
  void TakeOver();

  const Work work_;
  std::atomic<bool> cancelled_ = false;
  QString error_;
  std::thread thread_;
};

}  // namespace quillmate::ui
