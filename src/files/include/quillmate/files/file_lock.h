#pragma once

#include <filesystem>

namespace quillmate::files {

/// An advisory lock on a whole file, which the system gives back when the process ends. The file is made when it is
/// missing and never removed: a lock on a removed file excludes nobody. Child processes do not inherit the lock.
class FileLock {
 public:
  explicit FileLock(const std::filesystem::path& file) noexcept;
  ~FileLock();
  FileLock(FileLock&& other) noexcept;
  FileLock& operator=(FileLock&&) = delete;

  /// False when somebody else holds any lock, or when the file can't be locked at all.
  bool TryExclusive() noexcept;
  /// Waits for others' exclusive locks to end, then holds a shared lock (instead of an own exclusive one).
  void WaitShared() noexcept;

 private:
#ifdef _WIN32
  void* handle_;
  bool exclusive_ = false;
#else
  int descriptor_;
#endif
};

}  // namespace quillmate::files
