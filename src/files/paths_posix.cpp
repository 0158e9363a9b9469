#include <quillmate/files/paths.h>

namespace quillmate::files {

namespace fs = std::filesystem;

bool IsAbsolutePath(const fs::path& path) { return path.is_absolute(); }

fs::path AbsolutePath(const fs::path& path) { return path.empty() ? path : fs::absolute(path); }

fs::path NormalPath(const fs::path& path) { return path.lexically_normal(); }

fs::path RealPath(const fs::path& path, std::error_code& error) {
  const fs::path full = fs::absolute(path, error);
  return error ? fs::path() : fs::weakly_canonical(full, error);
}

fs::path PathAsNamed(const fs::path& path) { return path; }

bool IsLink(const fs::path& path) noexcept {
  std::error_code ignored;
  return fs::is_symlink(fs::symlink_status(path, ignored));
}

std::vector<FolderEntry> FolderEntries(const fs::path& folder, std::error_code& error) {
  std::vector<FolderEntry> entries;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    std::error_code ignored;
    entries.push_back({it->path(), it->is_directory(ignored), it->is_symlink(ignored)});
  }
  return entries;
}

void RenamePath(const fs::path& from, const fs::path& to) { fs::rename(from, to); }

bool RemovePath(const fs::path& path, std::error_code& error) noexcept { return fs::remove(path, error); }

}  // namespace quillmate::files
