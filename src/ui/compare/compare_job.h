#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <string>
#include <thread>

#include <quillmate/project/compared_state.h>

namespace quillmate::ui {

/// A comparison that is made in a thread of its own.
class CompareJob : public QObject {
  Q_OBJECT

 public:
  explicit CompareJob(project::CompareRequest request, QObject* parent = nullptr);
  /// Gives it up, and waits until nothing is read any more.
  ~CompareJob() override;

  /// Makes it now where no thread can be started.
  void Start();
  /// Gives it up; Finished still comes.
  void Cancel() { progress_.cancelled = true; }
  /// Returns when no file is read any more; the comparison goes on.
  void FinishReading();

  const project::CompareRequest& Request() const noexcept { return request_; }
  bool IsDone() const noexcept { return isDone_; }
  /// What it is at, for the user.
  QString StatusText() const;
  /// Null when it failed or was given up.
  std::shared_ptr<const project::ComparedProjects> Result() const noexcept { return isDone_ ? result_ : nullptr; }
  /// Why it failed; empty when it didn't.
  const std::string& Error() const noexcept { return error_; }

 signals:
  void Finished();

 private:
  void Run() noexcept;
  void TakeOver();

  const project::CompareRequest request_;
  project::CompareProgress progress_;
  std::shared_ptr<project::ComparedProjects> result_;
  std::string error_;
  std::thread thread_;
  bool isDone_ = false;
};

}  // namespace quillmate::ui
