#include "read_files.h"

#include <algorithm>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>

namespace quillmate::ui {

namespace fs = std::filesystem;

void KnownFiles::Check(const std::vector<std::filesystem::path>& written) const {
  for (const auto& path : written) {
    if (read_.Contains(path)) throw files::Failure(files::FileReason::kIsInput, path);
  }
}

void ReadFiles::Check(const std::vector<std::filesystem::path>& written,
                      const std::vector<std::filesystem::path>& alsoRead) const {
  // What is not there is read by nobody.
  const auto exists = [](const fs::path& path) { return files::IdentityOf(path).has_value(); };
  if (std::ranges::any_of(written, exists)) Known(alsoRead).Check(written);
}

KnownFiles ReadFiles::Known(const std::vector<std::filesystem::path>& alsoRead) const {
  files::IdentitySet read;
  for (const auto& file : alsoRead) read.Add(file);
  for (const auto& file : documents_.Files()) read.Add(file);
  if (session_.IsLoaded()) {
    for (const auto& name : codedb::DatabaseFiles()) read.Add(session_.Folder() / name);
    // Numbered without a gap.
    for (int number = 1; number <= session_.Tree()->moduleCount; ++number) {
      read.Add(codedb::ModuleTextPath(session_.Folder(), codedb::ModuleNumber{number}));
    }
  }
  return KnownFiles(std::move(read));
}

}  // namespace quillmate::ui
