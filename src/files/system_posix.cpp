#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/stamp.h>

#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kModeBits = 07777;
constexpr mode_t kRightsOfGroup = 070;
constexpr mode_t kRightsOfOthers = 07;
constexpr const char* kAccessList = "system.posix_acl_access";

std::error_code Error(int code) noexcept { return {code, std::generic_category()}; }
std::error_code Outcome(int result) noexcept { return result == 0 ? std::error_code() : Error(errno); }

bool LooksAt(const fs::path& path, struct stat& status) noexcept { return lstat(path.c_str(), &status) == 0; }

std::error_code FlushAt(const fs::path& path, int flags) noexcept {
  OpenFile file(open(path.c_str(), O_RDONLY | O_CLOEXEC | flags));
  // A folder that can be entered but not listed can't be flushed either; the names in it are then up to the system.
  if (!file.IsOpen()) return errno == EACCES && (flags & O_DIRECTORY) != 0 ? std::error_code() : Error(errno);
  return file.Flush();
}

std::int64_t Nanoseconds(const struct timespec& time) noexcept {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// The rights that a list grants beyond owner, group and others show as the group's and would become the group's.
void TakeAccessList(const fs::path& from, const fs::path& to) noexcept {
  char list[4096];
  const ssize_t size = getxattr(from.c_str(), kAccessList, list, sizeof list);
  if (size > 0) {
    setxattr(to.c_str(), kAccessList, list, static_cast<std::size_t>(size), 0);
  } else {
    removexattr(to.c_str(), kAccessList);
  }
}

bool GiveToOwnerAndGroup(const fs::path& file, const struct stat& wanted, const struct stat& now) noexcept {
  if (now.st_uid == wanted.st_uid && now.st_gid == wanted.st_gid) return true;
  if (lchown(file.c_str(), wanted.st_uid, wanted.st_gid) == 0) return true;
  return now.st_gid == wanted.st_gid || lchown(file.c_str(), static_cast<uid_t>(-1), wanted.st_gid) == 0;
}

/// What was granted to one group is not for another.
mode_t WithoutGroup(mode_t mode) noexcept { return mode & (~kRightsOfGroup | ((mode & kRightsOfOthers) << 3U)); }

/// File systems without rights refuse, and give every file the same.
std::error_code SetMode(const fs::path& file, mode_t mode) noexcept {
  if (chmod(file.c_str(), mode) == 0) return {};
  const int code = errno;
  struct stat status {};
  return LooksAt(file, status) && (status.st_mode & kModeBits & ~mode) == 0 ? std::error_code() : Error(code);
}

}  // namespace

std::optional<std::size_t> OpenFile::PlainSize() const noexcept {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
}

std::size_t OpenFile::Read(char* to, std::size_t count, std::error_code& error) noexcept {
  ssize_t got = read(descriptor_, to, count);
  while (got < 0 && errno == EINTR) got = read(descriptor_, to, count);
  error = got < 0 ? Error(errno) : std::error_code();
  return got < 0 ? 0 : static_cast<std::size_t>(got);
}

std::error_code OpenFile::Write(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return Error(errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code OpenFile::CutHere() noexcept {
  return Outcome(ftruncate(descriptor_, lseek(descriptor_, 0, SEEK_CUR)));
}

std::error_code OpenFile::Flush() noexcept {
  int result = fsync(descriptor_);
  while (result != 0 && errno == EINTR) result = fsync(descriptor_);
  if (result == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS) return {};
  return Error(errno);
}

std::error_code OpenFile::Close() noexcept {
  const int descriptor = std::exchange(descriptor_, -1);
  // The descriptor is gone even when a signal came between.
  return descriptor < 0 || close(descriptor) == 0 || errno == EINTR ? std::error_code() : Error(errno);
}

OpenFile OpenToRead(const fs::path& file, std::error_code& error) noexcept {
  OpenFile opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  error = opened.IsOpen() ? std::error_code() : Error(errno);
  return opened;
}

OpenFile OpenToWrite(const fs::path& file, WriteMode mode, std::error_code& error) noexcept {
  const int flags = mode == WriteMode::kNew ? O_CREAT | O_EXCL : mode == WriteMode::kReplace ? O_CREAT | O_TRUNC : 0;
  OpenFile opened(open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | flags, 0666));
  error = opened.IsOpen() ? std::error_code() : Error(errno);
  return opened;
}

std::error_code FlushFile(const fs::path& file) noexcept { return FlushAt(file, O_NOFOLLOW); }

std::error_code FlushFolder(const fs::path& folder) noexcept { return FlushAt(folder, O_DIRECTORY); }

bool FlushFileSystem(const fs::path& folder, std::error_code& error) noexcept {
#ifdef __linux__
  const int descriptor = open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
  if (descriptor < 0) return false;
  const int result = syncfs(descriptor);
  const int code = errno;
  close(descriptor);
  if (result != 0 && code == ENOSYS) return false;
  error = result == 0 ? std::error_code() : Error(code);
  return true;
#else
  static_cast<void>(folder), static_cast<void>(error);
  return false;
#endif
}

std::error_code MakeFolder(const fs::path& folder) noexcept { return Outcome(mkdir(folder.c_str(), 0777)); }

std::error_code MakePrivateFolder(const fs::path& folder) noexcept { return Outcome(mkdir(folder.c_str(), 0700)); }

void Hide(const fs::path& /*folder*/) noexcept {}

bool IsOwn(const fs::path& path) noexcept {
  struct stat status {};
  return LooksAt(path, status) && status.st_uid == geteuid();
}

std::error_code AddName(const fs::path& file, const fs::path& second) noexcept {
  return Outcome(link(file.c_str(), second.c_str()));
}

std::error_code Rename(const fs::path& from, const fs::path& to, NewName name) noexcept {
#ifdef RENAME_NOREPLACE
  if (name == NewName::kFree) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return Error(errno);
  }
#endif
  if (name == NewName::kFree && Exists(to)) return Error(EEXIST);
  return Outcome(rename(from.c_str(), to.c_str()));
}

std::error_code TakeRights(const fs::path& from, const fs::path& to) noexcept {
  struct stat wanted {};
  struct stat now {};
  if (!LooksAt(from, wanted) || !S_ISREG(wanted.st_mode) || !LooksAt(to, now)) return {};
  mode_t mode = wanted.st_mode & kModeBits;
  if (!GiveToOwnerAndGroup(to, wanted, now)) mode = WithoutGroup(mode);
  const bool isOwners = now.st_uid == wanted.st_uid && now.st_gid == wanted.st_gid;
  if (!isOwners && LooksAt(to, now) && now.st_uid != wanted.st_uid) mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
  TakeAccessList(from, to);
  return SetMode(to, mode);
}

void CommonRights::Add(const fs::path& file) {
  struct stat status {};
  if (!LooksAt(file, status) || !S_ISREG(status.st_mode)) return;
  mode_ |= status.st_mode & kModeBits;
  owners_.emplace(status.st_uid, status.st_gid);
}

std::error_code CommonRights::Limit(const fs::path& file) const noexcept {
  struct stat now {};
  if (owners_.empty() || !LooksAt(file, now)) return {};
  mode_t mode = now.st_mode & kModeBits & mode_;
  struct stat wanted = now;
  if (owners_.size() == 1) std::tie(wanted.st_uid, wanted.st_gid) = *owners_.begin();
  if (!GiveToOwnerAndGroup(file, wanted, now)) mode = WithoutGroup(mode);
  return SetMode(file, mode);
}

std::optional<FileIdentity> IdentityOf(const fs::path& path) noexcept {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, {status.st_ino, 0}};
}

FileStamp StampOf(const fs::path& file) noexcept {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return {};
  struct timespec now {};
  clock_gettime(CLOCK_REALTIME, &now);
  return {static_cast<std::uintmax_t>(status.st_size), Nanoseconds(status.st_mtim),
          Nanoseconds(status.st_mtim) + kStampStep < Nanoseconds(now)};
}

bool IsDevice(const fs::path& path) noexcept {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

fs::path TemporaryFolder() {
  for (const char* const name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
    const char* const folder = std::getenv(name);
    if (folder != nullptr && *folder != '\0') return folder;
  }
  return "/tmp";
}

void CloseFilesIn(const fs::path& /*path*/) noexcept {}

}  // namespace quillmate::files
