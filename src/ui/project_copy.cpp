#include "project_copy.h"

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>

namespace quillmate::ui {

ProjectCopy::ProjectCopy(const std::filesystem::path& project, BackgroundJob& job)
    : work_(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate), folder_(work_.Path() / "stand") {
  job.Begin("Lese das Projekt");
  std::filesystem::create_directory(folder_);
  codedb::CopyAllFiles(project, folder_);
  job.EndReading();
}

std::vector<codedb::ModuleRecord> ProjectCopy::ReadIndex() const {
  codedb::CodeDatabase index;
  index.OpenCodeDatabase(folder_);
  return index.ReadIndex();
}

}  // namespace quillmate::ui
