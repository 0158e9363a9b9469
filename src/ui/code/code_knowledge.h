#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

#include <quillmate/project/session.h>
#include <quillmate/project/understanding_builder.h>

namespace quillmate::ui {

/// What the code on screen means: made in the background when a project is loaded, dropped with it.
class CodeKnowledge : public QObject {
  Q_OBJECT

 public:
  /// `assumed`: where a project runs that does not tell.
  CodeKnowledge(project::Session& session, symbols::Host assumed);

  /// Begins to make that of the session's project.
  void Start();
  /// Forgets everything; the project's files may go away.
  void Drop();
  /// The project's files may be copied and removed.
  void FinishReading() { builder_.FinishReading(); }

  /// Null while there is none. Made now where it could not be made beside the window's work.
  std::shared_ptr<const project::Understanding> Get();
  /// True while it is being made.
  bool IsOnTheWay() const { return builder_.Now() == project::UnderstandingBuilder::State::kBuilding; }
  /// Why there is none, for the user.
  QString MissingText() const;

 signals:
  /// It is there, or can't be made.
  void Arrived();
  /// What is being done, for the status bar; empty at the end.
  void StatusChanged(const QString& text);

 private:
  void TakeOver();

  project::Session& session_;
  symbols::Host assumed_;
  /// Tells the status bar how far it is.
  QTimer clock_;
  bool hasTold_ = false;
  project::UnderstandingBuilder builder_;
};

}  // namespace quillmate::ui
