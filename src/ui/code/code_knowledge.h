#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>
#include <string>

#include <quillmate/project/session.h>
#include <quillmate/project/understanding.h>

#include "background_job.h"

namespace quillmate::ui {

/// What the code on screen means: made in the background when a project is loaded, dropped with it.
class CodeKnowledge : public QObject {
  Q_OBJECT

 public:
  /// `assumed`: where a project runs that does not tell.
  CodeKnowledge(project::Session& session, symbols::Host assumed);
  ~CodeKnowledge() override { Drop(); }

  /// Begins to make that of the session's project.
  void Start();
  /// Forgets everything; the project's files may go away.
  void Drop();
  /// The project's files may be copied and removed.
  void FinishReading() const;

  /// Null while there is none.
  std::shared_ptr<const project::Understanding> Get() const { return made_; }
  /// True while it is being made.
  bool IsOnTheWay() const { return job_ != nullptr; }
  /// Why there is none, for the user.
  QString MissingText() const;

 signals:
  /// It is there, or can't be made.
  void Arrived();
  /// What is being done, for the status bar; empty at the end.
  void StatusChanged(const QString& text);

 private:
  void TakeOver();
  int Percent() const;

  project::Session& session_;
  symbols::Host assumed_;
  /// Tells the status bar how far it is.
  QTimer clock_;
  bool hasTold_ = false;
  /// Shared with the thread; with the job.
  std::shared_ptr<project::UnderstandingProgress> progress_;
  std::unique_ptr<BackgroundJob> job_;
  std::shared_ptr<const project::Understanding> made_;
  std::string error_;
};

}  // namespace quillmate::ui
