#include "project_folder.h"

#include <algorithm>
#include <system_error>

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// A name beside the target that nobody uses.
fs::path FreeNeighbour(const fs::path& target, std::string_view ending) {
  for (int number = 0;; ++number) {
    fs::path candidate = target;
    candidate += "." + std::string(ending) + (number == 0 ? "" : std::to_string(number));
    if (!fs::exists(fs::symlink_status(candidate))) return candidate;
  }
}

void CopyFiles(const fs::path& source, const fs::path& target) {
  for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
    if (entry.is_regular_file()) fs::copy_file(entry.path(), target / entry.path().filename());
  }
}

/// What a project folder held besides the project.
void MoveSubFolders(const fs::path& source, const fs::path& target) {
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
    if (entry.is_directory() && !entry.is_symlink())
      fs::rename(entry.path(), target / entry.path().filename(), ignored);
  }
}

void RemoveFiles(const fs::path& folder) {
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
    if (!entry.is_directory() || entry.is_symlink()) fs::remove(entry.path(), ignored);
  }
  fs::remove(folder, ignored);
}

void Swap(const fs::path& fresh, const fs::path& target) {
  if (!fs::exists(target)) {
    fs::rename(fresh, target);
    return;
  }
  const fs::path old = FreeNeighbour(target, "alt");
  fs::rename(target, old);
  std::error_code failed;
  fs::rename(fresh, target, failed);
  if (failed) {
    fs::rename(old, target);
    throw fs::filesystem_error("Der Projektordner konnte nicht ersetzt werden", target, failed);
  }
  MoveSubFolders(old, target);
  RemoveFiles(old);
}

}  // namespace

std::string CleanName(std::string_view name) {
  constexpr std::string_view kForbidden = "/\\:*?<>|\"";
  std::string clean(name);
  std::erase_if(clean, [=](char c) { return kForbidden.find(c) != std::string_view::npos; });
  return clean;
}

void ReplaceProjectFolder(const fs::path& source, const fs::path& target) {
  const fs::path fresh = FreeNeighbour(target, "neu");
  try {
    fs::create_directories(fresh);
    CopyFiles(source, fresh);
    Swap(fresh, target);
  } catch (...) {
    RemoveFiles(fresh);
    throw;
  }
}

}  // namespace quillmate::ui
