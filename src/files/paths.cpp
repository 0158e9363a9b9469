#include <quillmate/files/paths.h>
#include <quillmate/files/stamp.h>

namespace quillmate::files {

namespace fs = std::filesystem;

std::string CleanName(std::string_view name) {
  constexpr std::string_view kForbidden = "/\\:*?<>|\"";
  std::string clean(name);
  std::erase_if(clean, [=](char c) { return kForbidden.find(c) != std::string_view::npos; });
  return clean.find_first_not_of(". ") == std::string::npos ? std::string() : clean;
}

bool IsUnchanged(const fs::path& file, const FileStamp& stamp) noexcept {
  if (!stamp.settled) return false;
  const FileStamp now = StampOf(file);
  return now.settled && now.size == stamp.size && now.changed == stamp.changed;
}

std::string PathText(const fs::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

fs::path PathFromText(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

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

}  // namespace quillmate::files
