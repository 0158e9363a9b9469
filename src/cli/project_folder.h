#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "interruption.h"

namespace quillmate::cli {

/// A project folder that is being written.
///
/// Its files are made in a new folder beside the target and put in place by Finish, so that until then, and whenever
/// something fails, the target is what it was. Of a target that is a project already, only the project's own files are
/// replaced; sub-folders and other people's files stay. A process that is killed between the steps of Finish leaves
/// the new project whole, and what had to move over to it in the hidden folder beside it. Failures throw
/// CommandFailure.
class NewProjectFolder {
 public:
  /// `target` is a UTF-8 path. A target that exists needs `overwrite`, and must be a project folder or empty.
  NewProjectFolder(const std::string& target, bool overwrite);

  /// Where the files are to be written.
  const std::filesystem::path& Path() const noexcept { return folder_->Path(); }
  void Finish();

 private:
  void CheckTarget(bool overwrite) const;
  void PutInPlace();
  void Replace();

  std::filesystem::path target_;
  bool replaces_ = false;
  std::unique_ptr<Leftover> folder_;
};

/// True for the names of files that belong to an index: the database, what its engine leaves beside it, the texts of
/// the modules.
bool IsProjectFile(const std::filesystem::path& name);

}  // namespace quillmate::cli
