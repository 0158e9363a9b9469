#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <quillmate/codedb/notes.h>
#include <quillmate/export/cover_page.h>
#include <quillmate/export/site_project.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/project/understanding.h>
#include <quillmate/text/code_options.h>

#include "hand_over_choice.h"
#include "project_pdf.h"

namespace quillmate::ui {

/// All that handing a project over needs, gathered while the project is loaded: what it is made from afterwards is a
/// copy of the project's files, so that the project on screen may be left meanwhile.
struct HandOverOrder {
  HandOverChoice choice;
  /// The folder that is to be made, or the zip file.
  std::filesystem::path target;
  /// Name of the project, UTF-8, and when it is handed over, in words.
  std::string title;
  std::string time;
  std::shared_ptr<const project::Understanding> known;
  std::vector<codedb::Note> notes;
  /// Its index folder is that of the copy.
  output::SiteProject site;
  text::CodeLook look;
  int moduleCount = 0;
  ProjectPdf pdf;
};

/// Hands a project over in a thread of its own: the target is there whole, or not at all. Made in two steps: with the
/// job comes the folder for the copy of the project's files, to be filled before Start.
class HandOverJob : public QObject {
  Q_OBJECT

 public:
  /// Throws files::Failure where nothing can be made in the target's place.
  explicit HandOverJob(HandOverChoice choice, std::filesystem::path target, QObject* parent);
  /// Gives it up, and waits until the thread has ended.
  ~HandOverJob() override;

  /// Where the project's files are to be copied.
  const std::filesystem::path& CopyFolder() const noexcept { return copy_; }
  void Start(HandOverOrder order);
  /// Ends it early; Finished still comes.
  void Cancel() noexcept { cancelled_ = true; }

  const std::filesystem::path& Target() const noexcept { return target_; }
  bool IsCancelled() const noexcept { return cancelled_; }
  /// It is in its place; to be asked after it has finished.
  bool IsMade() const noexcept { return isMade_; }
  /// Why nothing was made, UTF-8; empty when it was, or was given up.
  const std::string& Error() const noexcept { return error_; }
  /// What it is at, in words, and how much of that is done.
  QString StatusText(int& percent) const;

 signals:
  void Finished();

 private:
  class Maker;

  void Run() noexcept;
  void TakeOver();
  void Make();
  /// Both throw when the job was given up.
  void Begin(const char* step);
  void Tell(std::size_t done, std::size_t total);

  const std::filesystem::path target_;
  /// Of a folder; nothing for a zip file.
  std::unique_ptr<files::FolderReplacement> replacement_;
  files::WorkFolder work_;
  std::filesystem::path copy_;
  HandOverOrder order_;
  std::atomic<bool> cancelled_ = false;
  bool isMade_ = false;
  std::string error_;
  mutable std::mutex mutex_;
  const char* step_ = "";
  int percent_ = 0;
  std::thread thread_;
};

}  // namespace quillmate::ui
