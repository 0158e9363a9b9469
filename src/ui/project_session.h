#pragma once

#include <QObject>
#include <QTimer>

#include <quillmate/project/session.h>

namespace quillmate::ui {

/// The session of the window, with a signal for each of its calls.
class ProjectSession : public QObject, private project::SessionListener, public project::Session {
  Q_OBJECT

 public:
  ProjectSession(codedb::CodeDatabase& index, std::filesystem::path& folder);

 signals:
  void ProjectLeaves();
  void ProjectChanged();
  void TitleChanged();
  void PlaceChanged();
  void HistoryChanged();
  void Moved(project::Reveal reveal);

 private:
  void OnProjectLeaves() override { emit ProjectLeaves(); }
  void OnProjectChanged() override;
  void OnTitleChanged() override { emit TitleChanged(); }
  void OnPlaceChanged() override { emit PlaceChanged(); }
  void OnHistoryChanged() override { emit HistoryChanged(); }
  void OnMoved(project::Reveal reveal) override { emit Moved(reveal); }

  /// Reads texts ahead while the window has nothing else to do.
  QTimer idle_;
};

}  // namespace quillmate::ui
