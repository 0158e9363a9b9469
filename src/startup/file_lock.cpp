#include <utility>

#include "file_lock_p.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace quillmate::startup {

#ifdef _WIN32

namespace {

// The range may lie behind the end of the file.
bool Lock(HANDLE file, DWORD flags) noexcept {
  OVERLAPPED start{};
  return LockFileEx(file, flags, 0, 1, 0, &start) != 0;
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& file) noexcept
    : handle_(CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                          OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

FileLock::FileLock(FileLock&& other) noexcept
    : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)), exclusive_(other.exclusive_) {}

FileLock::~FileLock() {
  if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
}

bool FileLock::TryExclusive() noexcept {
  exclusive_ = Lock(handle_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY);
  return exclusive_;
}

void FileLock::WaitShared() noexcept {
  // A shared lock may overlap an exclusive one of the same handle; of the two, unlocking ends the exclusive one first.
  Lock(handle_, 0);
  OVERLAPPED start{};
  if (std::exchange(exclusive_, false)) UnlockFileEx(handle_, 0, 1, 0, &start);
}

#else

namespace {

bool Lock(int descriptor, int operation) noexcept {
  int result = flock(descriptor, operation);
  while (result != 0 && errno == EINTR) result = flock(descriptor, operation);
  return result == 0;
}

}  // namespace

// Reading is enough for a lock, so that users who share a program folder can lock each other's file.
FileLock::FileLock(const std::filesystem::path& file) noexcept
    : descriptor_(open(file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666)) {}

FileLock::FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool FileLock::TryExclusive() noexcept { return Lock(descriptor_, LOCK_EX | LOCK_NB); }

void FileLock::WaitShared() noexcept { Lock(descriptor_, LOCK_SH); }

#endif

}  // namespace quillmate::startup
