#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <string>

#include <quillmate/project/compared_state.h>

#include "background_job.h"

namespace quillmate::ui {

/// A comparison that is made in a thread of its own.
class CompareJob : public QObject {
  Q_OBJECT

 public:
  explicit CompareJob(project::CompareRequest request, QObject* parent = nullptr);
  /// Gives it up, and waits until nothing is read any more.
  ~CompareJob() override;

  void Start() { job_.Start(); }
  /// Gives it up; Finished still comes.
  void Cancel() { progress_.cancelled = true; }
  /// Returns when no file is read any more; the comparison goes on.
  void FinishReading();

  const project::CompareRequest& Request() const noexcept { return request_; }
  bool IsDone() const noexcept { return job_.IsDone(); }
  /// What it is at, for the user.
  QString StatusText() const;
  /// Null when it failed or was given up.
  std::shared_ptr<const project::ComparedProjects> Result() const noexcept { return IsDone() ? result_ : nullptr; }
  /// Why it failed; empty when it didn't.
  const std::string& Error() const noexcept { return job_.Error(); }

 signals:
  void Finished();

 private:
  void Run();

  const project::CompareRequest request_;
  project::CompareProgress progress_;
  std::shared_ptr<project::ComparedProjects> result_;
  // The last member: what its thread writes to goes after it.
  BackgroundJob job_;
};

}  // namespace quillmate::ui
