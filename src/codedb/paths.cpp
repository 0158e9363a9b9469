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

}  // namespace quillmate::codedb
