// The names of the functions as they are, not as large-file ones.
#undef _FILE_OFFSET_BITS
// The functions themselves, not the checks around them.
#undef _FORTIFY_SOURCE

#include "faults/fault_points.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace quillmate::faults {
namespace {

/// Never destroyed, so that calls at the very end of the process find it.
FaultPlan& ThePlan() {
  static auto* const plan = new FaultPlan;
  return *plan;
}
std::atomic<int> passed{0};
std::atomic<bool> armed{false};

/// The system's function of that name.
template <typename Function>
Function Real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// For a relative path the folder that it is meant in, without links.
std::string FullPath(int folder, const char* path) {
  if (path[0] == '/') return path;
  char base[4096] = {};
  const std::string link = folder == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/" + std::to_string(folder);
  const ssize_t length = readlink(link.c_str(), base, sizeof base - 1);
  return length > 0 ? std::string(base, static_cast<std::size_t>(length)) + "/" + path : path;
}

bool IsWatched(const std::string& path) {
  const std::string& below = ThePlan().below;
  return armed && path.compare(0, below.size(), below) == 0;
}

std::string PathOf(int descriptor) {
  char path[4096] = {};
  const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), path, sizeof path - 1);
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

/// The error with which the call fails; 0 when it goes through.
int Meet(const std::string& path, bool needsRoom) {
  if (!IsWatched(path)) return 0;
  const int point = ++passed;
  const FaultPlan& plan = ThePlan();
  if (plan.fault == Fault::kKill && point == plan.at) kill(getpid(), SIGKILL);
  if (plan.fault == Fault::kError && point == plan.at) return EIO;
  if (plan.fault == Fault::kFullDisk && point >= plan.at && needsRoom) return ENOSPC;
  return 0;
}

constexpr bool kNeedsRoom = true;

/// For calls that make or change a name.
bool IsFixed(const std::string& path) {
  const std::string& fixed = ThePlan().fixed;
  if (!armed || fixed.empty() || path.compare(0, fixed.size(), fixed) != 0) return false;
  errno = EACCES;
  return true;
}

/// Meets the point, then goes on to the system's function.
template <typename Result, typename... Arguments>
Result Pass(const std::string& path, bool needsRoom, const char* name, Arguments... arguments) {
  if (const int error = Meet(path, needsRoom)) {
    errno = error;
    return -1;
  }
  return Real<Result (*)(Arguments...)>(name)(arguments...);
}

/// That the disk was full when bytes were written back is told once.
int PassFlush(int descriptor, const char* name) {
  if (!IsWatched(PathOf(descriptor))) return Real<int (*)(int)>(name)(descriptor);
  errno = Meet(PathOf(descriptor), passed + 1 == ThePlan().at);
  return errno == 0 ? 0 : -1;
}

/// Bytes that are written over others have their room.
bool GrowsFile(int descriptor, size_t count) {
  struct stat status {};
  const off_t at = lseek(descriptor, 0, SEEK_CUR);
  return at < 0 || fstat(descriptor, &status) != 0 || at + static_cast<off_t>(count) > status.st_size;
}

bool Changes(int flags) { return (flags & (O_CREAT | O_TRUNC)) != 0; }

int PassOpen(const char* name, const char* path, int flags, mode_t mode) {
  if (!Changes(flags)) return Real<int (*)(const char*, int, ...)>(name)(path, flags, mode);
  if (const int error = Meet(FullPath(AT_FDCWD, path), kNeedsRoom)) {
    errno = error;
    return -1;
  }
  return Real<int (*)(const char*, int, ...)>(name)(path, flags, mode);
}

int PassOpenAt(const char* name, int folder, const char* path, int flags, mode_t mode) {
  if (const int error = Changes(flags) ? Meet(FullPath(folder, path), kNeedsRoom) : 0) {
    errno = error;
    return -1;
  }
  return Real<int (*)(int, const char*, int, ...)>(name)(folder, path, flags, mode);
}

std::FILE* PassStream(const char* name, const char* path, const char* mode) {
  if (const int error = *mode != 'r' ? Meet(FullPath(AT_FDCWD, path), kNeedsRoom) : 0) {
    errno = error;
    return nullptr;
  }
  return Real<std::FILE* (*)(const char*, const char*)>(name)(path, mode);
}

mode_t ModeOf(int flags, va_list& arguments) { return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0; }

const char* Setting(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// A library that is preloaded takes its plan from the environment.
__attribute__((constructor)) void ArmFromEnvironment() {
  const std::string fault = Setting("QUILLMATE_FAULT");
  if (fault.empty()) return;
  const Fault kind = fault == "kill"   ? Fault::kKill
                     : fault == "eio"  ? Fault::kError
                     : fault == "full" ? Fault::kFullDisk
                                       : Fault::kNone;
  Arm({kind, std::atoi(Setting("QUILLMATE_FAULT_AT")), Setting("QUILLMATE_FAULT_BELOW"),
       *Setting("QUILLMATE_FAULT_NO_LINKS") == '\0', Setting("QUILLMATE_FAULT_FIXED")});
}

__attribute__((destructor)) void WriteCount() {
  const char* const file = Setting("QUILLMATE_FAULT_COUNT");
  if (*file == '\0') return;
  armed = false;
  const int out = open(file, O_WRONLY | O_CREAT | O_TRUNC, 0666);
  const std::string text = std::to_string(passed.load()) + "\n";
  if (write(out, text.data(), text.size()) >= 0) close(out);
}

}  // namespace

void Arm(const FaultPlan& plan) {
  ThePlan() = plan;
  passed = 0;
  armed = true;
}

int PointsPassed() { return passed; }

}  // namespace quillmate::faults

namespace qf = quillmate::faults;

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t count) {
  return qf::Pass<ssize_t>(qf::PathOf(descriptor), qf::GrowsFile(descriptor, count), "write", descriptor, bytes, count);
}
ssize_t writev(int descriptor, const iovec* pieces, int count) {
  return qf::Pass<ssize_t>(qf::PathOf(descriptor), qf::kNeedsRoom, "writev", descriptor, pieces, count);
}
ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t offset) {
  return qf::Pass<ssize_t>(qf::PathOf(descriptor), qf::kNeedsRoom, "pwrite", descriptor, bytes, count, offset);
}
ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t offset) {
  return qf::Pass<ssize_t>(qf::PathOf(descriptor), qf::kNeedsRoom, "pwrite64", descriptor, bytes, count, offset);
}
int ftruncate(int descriptor, off_t size) noexcept {
  return qf::Pass<int>(qf::PathOf(descriptor), false, "ftruncate", descriptor, size);
}
int ftruncate64(int descriptor, off64_t size) noexcept {
  return qf::Pass<int>(qf::PathOf(descriptor), false, "ftruncate64", descriptor, size);
}
int fsync(int descriptor) { return qf::PassFlush(descriptor, "fsync"); }
int fdatasync(int descriptor) { return qf::PassFlush(descriptor, "fdatasync"); }
int syncfs(int descriptor) noexcept { return qf::PassFlush(descriptor, "syncfs"); }

int rename(const char* from, const char* to) noexcept {
  const std::string path = qf::FullPath(AT_FDCWD, to);
  return qf::IsFixed(path) ? -1 : qf::Pass<int>(path, false, "rename", from, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  const std::string path = qf::FullPath(toFolder, to);
  return qf::IsFixed(path) ? -1 : qf::Pass<int>(path, false, "renameat2", fromFolder, from, toFolder, to, flags);
}
int link(const char* from, const char* to) noexcept {
  if (!qf::ThePlan().secondNames && qf::IsWatched(qf::FullPath(AT_FDCWD, to))) {
    errno = EPERM;
    return -1;
  }
  return qf::Pass<int>(qf::FullPath(AT_FDCWD, to), qf::kNeedsRoom, "link", from, to);
}
int mkdir(const char* path, mode_t mode) noexcept {
  const std::string full = qf::FullPath(AT_FDCWD, path);
  return qf::IsFixed(full) ? -1 : qf::Pass<int>(full, qf::kNeedsRoom, "mkdir", path, mode);
}
int unlink(const char* path) noexcept { return qf::Pass<int>(qf::FullPath(AT_FDCWD, path), false, "unlink", path); }
int unlinkat(int folder, const char* path, int flags) noexcept {
  return qf::Pass<int>(qf::FullPath(folder, path), false, "unlinkat", folder, path, flags);
}
int rmdir(const char* path) noexcept { return qf::Pass<int>(qf::FullPath(AT_FDCWD, path), false, "rmdir", path); }
int remove(const char* path) noexcept { return qf::Pass<int>(qf::FullPath(AT_FDCWD, path), false, "remove", path); }
int chmod(const char* path, mode_t mode) noexcept {
  return qf::Pass<int>(qf::FullPath(AT_FDCWD, path), false, "chmod", path, mode);
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = qf::ModeOf(flags, arguments);
  va_end(arguments);
  return qf::PassOpen("open", path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = qf::ModeOf(flags, arguments);
  va_end(arguments);
  return qf::PassOpen("open64", path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = qf::ModeOf(flags, arguments);
  va_end(arguments);
  return qf::PassOpenAt("openat", folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = qf::ModeOf(flags, arguments);
  va_end(arguments);
  return qf::PassOpenAt("openat64", folder, path, flags, mode);
}
std::FILE* fopen(const char* path, const char* mode) { return qf::PassStream("fopen", path, mode); }
std::FILE* fopen64(const char* path, const char* mode) { return qf::PassStream("fopen64", path, mode); }

}  // extern "C"
