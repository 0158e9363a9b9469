#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The one way to replace a file, or the program's own files in a folder, as a whole.
///
/// What is new is made in a work folder (work_folder.h): beside a file, beside a folder that does not exist yet, inside
/// a folder that does. It is flushed to the disk before anything old goes.
///
/// * A new folder, or a file, takes its place by one rename.
/// * In a folder that exists the program's files are exchanged one by one, each in one step where the file system gives
///   a file two names, else in two renames. The folder itself keeps its place, and with it everything that hangs on it:
///   its owner and rights, whoever has it as the current folder or serves its files, what is mounted there. It may be
///   such a mount point itself, or are in a folder that nobody may write. Nothing else in it is touched, at no time.
///   A record in the work folder tells what goes and what comes, from before the first step until after the last one.
///   A failure in between takes all steps back. Whoever is killed leaves the record, and MendFolder takes the remaining
///   steps: at the next write into the folder and whenever the program opens it.
/// * A file whose folder takes no new name (it is not the user's, or another program holds the file), is written over,
///   with such a record in the folder for temporary files, where the next run looks for it.
///
/// What is replaced hands its rights, owner and group on as far as the system lets it. New files follow the process's
/// rules, but among files that are replaced none is open to more people than these.
///
/// Failures are Failure and name the target; until Commit has returned the target is what it was.
namespace quillmate::files {

using Writer = std::function<void(std::string_view bytes)>;

/// A file that is being written. Without Commit nothing happens to the target.
class FileReplacement {
 public:
  /// A link is followed. A folder and a write-protected file are refused. What is no plain file (a device, a pipe) is
  /// written to directly.
  explicit FileReplacement(std::filesystem::path target);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// EPIPE when the reader of a pipe has gone.
  void Write(std::string_view bytes);
  void Commit();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Replaces a file by what `produce` hands to its writer, or by bytes; what `produce` throws leaves the target alone.
void ReplaceFile(const std::filesystem::path& target, const std::function<void(const Writer&)>& produce);
void ReplaceFile(const std::filesystem::path& target, std::string_view bytes);

/// A folder whose files are being written. Without Commit nothing happens to the target.
class FolderReplacement {
 public:
  /// Links are followed. The folder above a target that does not exist must.
  explicit FolderReplacement(const std::filesystem::path& target);
  ~FolderReplacement();
  FolderReplacement(const FolderReplacement&) = delete;
  FolderReplacement& operator=(const FolderReplacement&) = delete;

  /// The target with all links followed.
  const std::filesystem::path& Target() const noexcept;
  /// Where the new files are to be made; folders only where the target does not exist yet.
  const std::filesystem::path& Path() const noexcept;
  /// The names of the new files.
  std::vector<std::filesystem::path> Names() const;

  /// `own` are the names of the files in the target that go, whether or not a new one of that name comes; those that do
  /// not exist, and folders, do not count. A new file whose name something else in the target has is a failure
  /// (file_exists, with the path of what has it).
  void Commit(const std::vector<std::filesystem::path>& own = {});

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::files
