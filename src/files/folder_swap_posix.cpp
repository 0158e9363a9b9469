#include <cstdio>
#include <system_error>

#include <fcntl.h>

#include <quillmate/files/folder_swap.h>

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

/// False when the system can't; nothing has changed then.
bool Exchange(const fs::path& a, const fs::path& b) noexcept {
#ifdef RENAME_EXCHANGE
  return renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
#else
  static_cast<void>(a), static_cast<void>(b);
  return false;
#endif
}

}  // namespace

fs::path SwapFolders(const fs::path& fresh, const fs::path& old, const fs::path& aside) {
  if (Exchange(fresh, old)) return fresh;
  fs::rename(old, aside);
  std::error_code error;
  fs::rename(fresh, old, error);
  if (!error) return aside;
  fs::rename(aside, old);
  throw fs::filesystem_error("rename", fresh, old, error);
}

}  // namespace quillmate::files
