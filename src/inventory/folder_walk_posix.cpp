#include <cerrno>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "folder_walk_p.h"

namespace quillmate::inventory {
namespace {

constexpr std::int64_t kSecond = 1000000000;

Stamp StampFrom(const struct stat& info) noexcept {
  return {static_cast<std::uint64_t>(info.st_size), info.st_mtim.tv_sec * kSecond + info.st_mtim.tv_nsec};
}

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { closedir(folder); }
};

}  // namespace

std::vector<WalkEntry> ListFolder(const std::filesystem::path& folder, std::error_code& error) {
  std::vector<WalkEntry> entries;
  error.clear();
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
  const std::unique_ptr<DIR, CloseFolder> opened(descriptor < 0 ? nullptr : fdopendir(descriptor));
  if (opened == nullptr) {
    error.assign(errno, std::generic_category());
    if (descriptor >= 0) close(descriptor);
    return entries;
  }
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(opened.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name == "." || name == ".." || entry->d_type == DT_LNK) continue;
    struct stat info = {};
    // Gone since, or not to be looked at: what can't be told apart is left out only when it is gone.
    if (fstatat(descriptor, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (S_ISDIR(info.st_mode)) {
      entries.push_back({std::string(name), true, {}});
    } else if (S_ISREG(info.st_mode)) {
      entries.push_back({std::string(name), false, StampFrom(info)});
    }
  }
  if (errno != 0) error.assign(errno, std::generic_category());
  return entries;
}

bool StampOf(const std::filesystem::path& file, Stamp& stamp) noexcept {
  struct stat info = {};
  if (lstat(file.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  stamp = StampFrom(info);
  return true;
}

}  // namespace quillmate::inventory
