#include <quillmate/codedb/paths.h>

namespace quillmate::codedb {

namespace fs = std::filesystem;

fs::path PathSeenFrom(const fs::path& folder, const fs::path& path) {
  return IsAbsolutePath(path) ? path : folder / path;
}

fs::path RealPath(const fs::path& path) {
  std::error_code error;
  fs::path real = RealPath(path, error);
  if (error) throw fs::filesystem_error("realpath", path, error);
  return real;
}

void RemoveFolder(const fs::path& folder, std::error_code& error) {
  std::error_code listing;
  std::error_code failure;
  for (const FolderEntry& entry : FolderEntries(folder, listing)) {
    std::error_code removal;
    if (entry.isFolder && !entry.isLink) {
      RemoveFolder(entry.path, removal);
    } else {
      RemovePath(entry.path, removal);
    }
    if (removal) failure = removal;
  }
  RemovePath(folder, error);
  if (failure) error = failure;
}

}  // namespace quillmate::codedb
