#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include <quillmate/files/replacement.h>

/// A saved project: a folder with an index, the texts of its modules and its facts.
///
/// To the project belong the files of the database engine by their names, and the texts of exactly those modules that
/// the index lists; everything else in the folder is somebody else's and never touched. A damaged index lists none.
namespace quillmate::codedb {

enum class FolderState {
  kMissing,
  kEmpty,
  kProject,
  kOther,     // holds something, but no index
  kNoFolder,  // a file
};

/// What is at a place. What a killed run left half exchanged there is brought to its end first.
FolderState LookAtFolder(const std::filesystem::path& folder);

/// The names of the files of the database engine that a project may have.
std::vector<std::filesystem::path> DatabaseFiles();

/// The names of the project's files, whether or not they exist. Checks the whole index.
std::vector<std::filesystem::path> ProjectFiles(const std::filesystem::path& folder);

/// Copies a project's files into an existing folder. Throws files::Failure, also for a damaged index.
void CopyAllFiles(const std::filesystem::path& from, const std::filesystem::path& to);

/// A project that is being written. Failures are files::Failure, also for what is in the way and not to be
/// overwritten.
class ProjectReplacement {
 public:
  /// The target must be missing, empty or a project.
  explicit ProjectReplacement(const std::filesystem::path& target);
  /// Where the files of the new project are to be made.
  const std::filesystem::path& Path() const noexcept { return folder_->Path(); }
  /// The full paths of what Commit replaces or removes, known once the new files are made.
  std::vector<std::filesystem::path> Replaced();
  void Commit();

 private:
  const std::vector<std::filesystem::path>& OldNames();

  std::unique_ptr<files::FolderReplacement> folder_;
  /// Of the target's files; looked up once, since the whole index is checked for it.
  std::optional<std::vector<std::filesystem::path>> oldNames_;
};

}  // namespace quillmate::codedb
