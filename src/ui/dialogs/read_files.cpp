#include "read_files.h"

#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>

namespace quillmate::ui {

void ReadFiles::Check(const std::vector<std::filesystem::path>& written,
                      const std::vector<std::filesystem::path>& alsoRead) const {
  files::IdentitySet read;
  for (const auto& file : alsoRead) read.Add(file);
  for (const auto& file : documents_.Files()) read.Add(file);
  if (session_.IsLoaded()) {
    for (const auto& name : codedb::ProjectFiles(session_.Folder())) read.Add(session_.Folder() / name);
  }
  for (const auto& path : written) {
    if (read.Contains(path)) throw files::Failure(files::FileReason::kIsInput, path);
  }
}

}  // namespace quillmate::ui
