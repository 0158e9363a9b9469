#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

#include "background_job.h"
#include "interaction.h"

class QWidget;

namespace quillmate::ui {

/// A long command.
struct Task {
  /// Name of its progress window; of tasks of one name there is one at a time.
  QString name;
  /// For the user.
  QString title;
  BackgroundJob::Work work;
  /// Runs, guarded, when the work has come to its end.
  std::function<void()> done{};
};

/// Long commands, carried out beside the window's work: each has a small window that tells how far it is and ends it. A
/// failure is told when nothing else runs.
class BackgroundTasks : public QObject {
 public:
  /// Progress is shown above `window`. Both must outlive it.
  BackgroundTasks(QWidget& window, Interaction& interaction) : window_(window), interaction_(interaction) {}
  /// Gives all of them up.
  ~BackgroundTasks() override;

  /// While a task of that name is under way: shows that one, says so, and gives false.
  bool IsFree(const QString& name);
  /// Its name must be free.
  void Start(Task task);

  /// The titles of what is under way.
  QStringList Titles() const;
  /// Returns when none of them reads the files of the project on screen any more.
  void FinishReading() const;
  /// Ends all of them, and returns when they have ended; nobody is told.
  void GiveUp();

 private:
  class Running;
  QList<Running*> All() const;

  QWidget& window_;
  Interaction& interaction_;
};

}  // namespace quillmate::ui
