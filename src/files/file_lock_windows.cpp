#include <utility>

#include <windows.h>

#include <quillmate/files/file_lock.h>

namespace quillmate::files {
namespace {

// The range may be past the end of the file.
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

}  // namespace quillmate::files
