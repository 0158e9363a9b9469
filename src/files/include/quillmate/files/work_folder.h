#pragma once

#include <filesystem>
#include <memory>
#include <mutex>

/// Hidden folders in which the program keeps what is not finished, or what lives no longer than a run.
///
/// A work folder is named ".Quillmate-TempDateien-" and something random, belongs to its user alone and holds a file
/// "lock", which its process keeps locked. So whoever comes later tells the folder of a living process from what a
/// crashed one left, on any system and without asking for process numbers: what can be locked is nobody's any more and
/// is removed. Before that a replacement that was under way in it is brought to its end (replacement.h).
namespace quillmate::files {

class WorkFolder {
 public:
  /// Makes one in `place`, and clears there what crashed runs left. Throws Failure, which names the place.
  /// `kPrivate` is for folders that many users share, where nobody else may look in; elsewhere the folder hands the
  /// rights of the place on to what is made in it.
  enum class Access { kAsPlace, kPrivate };
  explicit WorkFolder(const std::filesystem::path& place, Access access = Access::kAsPlace);
  /// Removes the folder with all that it holds, unless a replacement in it could neither be finished nor be taken back:
  /// the next run tries again then.
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::filesystem::path& Path() const noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Removes the work folders in `place` whose processes have ended, and brings their replacements to an end. Errors are
/// ignored folder by folder: what can't be mended now is tried again later. To be called before a folder is read that
/// the program writes.
void MendFolder(const std::filesystem::path& place) noexcept;

/// While it is held the process is not ended early: RemoveWorkFolders waits. Whoever waits for it while the process is
/// ending waits for ever, so that nothing is said or put in place any more. To be held for moments only, once in a call
/// chain.
class EndGuard {
 public:
  EndGuard();

 private:
  std::unique_lock<std::mutex> lock_;
};

/// Removes all work folders of this process, for a thread that is about to end it (a signal, the end of the user's
/// session), even while others are still writing into them. Nothing that they do with work folders or under an EndGuard
/// comes to an end after that.
void RemoveWorkFolders() noexcept;

}  // namespace quillmate::files
