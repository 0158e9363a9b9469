#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace quillmate::ui {

/// Work in a thread of its own, for a part of the window. It sees nothing of the window: what it needs is handed over
/// when it is made, and what comes of it is put where its owner looks after Finished.
class BackgroundJob : public QObject {
  Q_OBJECT

 public:
  /// What work throws that was given up; no failure.
  class Cancelled : public std::exception {};
  /// What it throws, Cancelled apart, is the failure of the job. It is destroyed in the thread, with all it holds.
  using Work = std::function<void(BackgroundJob& job)>;

  explicit BackgroundJob(Work work, QObject* parent = nullptr);
  /// Gives it up, and waits until the thread has ended.
  ~BackgroundJob() override;

  /// Does the work now where no thread can be started; Finished comes later in any case.
  void Start();
  /// Ends it early, as soon as the work looks; Finished still comes.
  void Cancel() noexcept { cancelled_ = true; }
  /// Returns when the thread has ended; Finished comes later.
  void Wait();
  /// Returns when the work has said that it reads the files of the project on screen no more, or has ended.
  void FinishReading() const;

  bool IsCancelled() const noexcept { return cancelled_; }
  /// Finished has come.
  bool IsDone() const noexcept { return isDone_; }
  /// It came to its end; to be asked after Finished.
  bool IsMade() const noexcept { return isMade_; }
  /// Why it failed, German, UTF-8; empty when it didn't, or was given up. To be asked after Finished.
  const std::string& Error() const noexcept { return error_; }
  /// What it is at, for the user, and how much of that is done; percent is -1 where nobody knows.
  QString StatusText(int& percent) const;

  // For the work, in its thread.
  const std::atomic<bool>& CancelFlag() const noexcept { return cancelled_; }
  /// What it is at from now on, UTF-8. Throws Cancelled, as Tell does.
  void Begin(std::string step);
  void Tell(std::size_t done, std::size_t total);
  void EndReading();

 signals:
  void Finished();

 private:
  void Run() noexcept;
  void TakeOver();

  Work work_;
  std::atomic<bool> cancelled_ = false;
  std::atomic<bool> hasRead_ = false;
  mutable std::mutex mutex_;
  std::string step_;
  int percent_ = -1;
  std::string error_;
  bool isMade_ = false;
  bool isDone_ = false;
  std::thread thread_;
};

}  // namespace quillmate::ui
