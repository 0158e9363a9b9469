#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QWidget>

#include "compare_job.h"

namespace quillmate::ui {

/// What is in the place of the result: how far the comparison is, or why there is none.
class CompareProgress : public QWidget {
 public:
  CompareProgress();

  /// Tells how far the job, which must live until Stop(), has come.
  void Follow(const CompareJob& job);
  void Stop() { clock_.stop(); }
  /// `reason`: German.
  void ShowFailure(const QString& reason);

 private:
  void Tell() { status_->setText(job_->StatusText()); }

  QTimer clock_;
  QLabel* status_;
  QProgressBar* bar_;
  const CompareJob* job_ = nullptr;
};

}  // namespace quillmate::ui
