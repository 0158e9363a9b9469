#pragma once

#include <filesystem>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/files/work_folder.h>

#include "background_job.h"

namespace quillmate::ui {

/// The files of the project on screen for work that takes long: the user may change or leave the project meanwhile.
/// They go with it.
class ProjectCopy {
 public:
  /// In the thread of the job, which reads the project to its end by that. Throws like codedb::CopyAllFiles.
  ProjectCopy(const std::filesystem::path& project, BackgroundJob& job);

  const std::filesystem::path& Path() const noexcept { return folder_; }
  std::vector<codedb::ModuleRecord> ReadIndex() const;

 private:
  files::WorkFolder work_;
  std::filesystem::path folder_;
};

}  // namespace quillmate::ui
