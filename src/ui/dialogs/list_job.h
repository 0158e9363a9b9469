#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <thread>

#include "list_source.h"

namespace quillmate::ui {

/// The rows of a list, found in a thread of its own. Deletes itself after it has finished.
class ListJob : public QObject {
  Q_OBJECT

 public:
  ListJob(FindRows find, QObject* parent);
  /// Gives it up, and waits until the thread has ended.
  ~ListJob() override;

  /// Finds them now where no thread can be started; Finished comes later in any case.
  void Start();
  /// Ends it early; Finished still comes.
  void Cancel() noexcept { cancelled_ = true; }

 signals:
  /// `error`: why there are no rows, for the user; empty when they were found.
  void Finished(const ListRows& rows, const QString& error);

 private:
  void Run() noexcept;
  void TakeOver();

  const FindRows find_;
  std::atomic<bool> cancelled_ = false;
  ListRows rows_;
  QString error_;
  std::thread thread_;
};

}  // namespace quillmate::ui
