#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <quillmate/files/file_lock.h>

namespace quillmate::files {
namespace {

bool Lock(int descriptor, int operation) noexcept {
  int result = flock(descriptor, operation);
  while (result != 0 && errno == EINTR) result = flock(descriptor, operation);
  return result == 0;
}

}  // namespace

// Reading is enough for a lock, so that users who share a program folder can lock each other's file; only file servers
// want it open for writing.
FileLock::FileLock(const std::filesystem::path& file) noexcept
    : descriptor_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666)) {
  if (descriptor_ < 0) descriptor_ = open(file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
}

FileLock::FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool FileLock::TryExclusive() noexcept { return Lock(descriptor_, LOCK_EX | LOCK_NB); }

void FileLock::WaitShared() noexcept { Lock(descriptor_, LOCK_SH); }

}  // namespace quillmate::files
