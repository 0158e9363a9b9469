#include "project_folder.h"

#include <algorithm>

#include <quillmate/files/folder_swap.h>
#include <quillmate/files/paths.h>

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

using Step = std::function<void()>;

/// A name beside the target that nobody uses.
fs::path FreeNeighbour(const fs::path& target, std::string_view ending) {
  std::error_code unknown;
  for (int number = 0;; ++number) {
    fs::path candidate = target;
    candidate += "." + std::string(ending) + (number == 0 ? "" : std::to_string(number));
    if (!fs::exists(fs::symlink_status(candidate, unknown))) return candidate;
  }
}

void CopyFiles(const fs::path& source, const fs::path& target, const Step& step) {
  std::error_code error;
  for (const files::FolderEntry& entry : files::FolderEntries(source, error)) {
    if (entry.isFolder) continue;
    step();
    fs::copy_file(entry.path, target / entry.path.filename());
  }
  if (error) throw fs::filesystem_error("list", source, error);
}

/// What a project folder held besides the project.
void MoveSubFolders(const fs::path& source, const fs::path& target, const Step& step) {
  std::error_code ignored;
  for (const files::FolderEntry& entry : files::FolderEntries(source, ignored)) {
    if (!entry.isFolder || entry.isLink) continue;
    step();
    fs::rename(entry.path, target / entry.path.filename(), ignored);
  }
}

void RemoveFiles(const fs::path& folder, const Step& step) {
  std::error_code ignored;
  for (const files::FolderEntry& entry : files::FolderEntries(folder, ignored)) {
    if (entry.isFolder && !entry.isLink) continue;
    step();
    files::RemovePath(entry.path, ignored);
  }
  step();
  files::RemovePath(folder, ignored);
}

/// The new project is in place; what is left of the old one is no reason to call the save a failure. Gives the folder
/// where it lies, nothing when all is gone.
fs::path ClearOld(const fs::path& old, const fs::path& target, const Step& step) noexcept {
  try {
    MoveSubFolders(old, target, step);
    RemoveFiles(old, step);
  } catch (const std::exception&) {
    return old;
  }
  std::error_code ignored;
  return fs::exists(old, ignored) ? old : fs::path();
}

}  // namespace

std::string CleanName(std::string_view name) {
  constexpr std::string_view kForbidden = "/\\:*?<>|\"";
  std::string clean(name);
  std::erase_if(clean, [=](char c) { return kForbidden.find(c) != std::string_view::npos; });
  return clean.find_first_not_of(". ") == std::string::npos ? std::string() : clean;
}

fs::path ReplaceProjectFolder(const fs::path& source, const fs::path& target, const Step& step) {
  const fs::path place = files::IsLink(target) ? files::RealPath(target) : target;
  const fs::path fresh = FreeNeighbour(place, "neu");
  fs::path old;
  try {
    step();
    fs::create_directories(fresh);
    CopyFiles(source, fresh, step);
    if (fs::exists(place)) {
      step();
      old = files::SwapFolders(fresh, place, FreeNeighbour(place, "alt"));
    } else {
      step();
      files::RenamePath(fresh, place);
    }
  } catch (const fs::filesystem_error& failure) {
    RemoveFiles(fresh, [] {});
    // The folder beside the target says nothing to whoever reads the message.
    throw fs::filesystem_error("save", target, failure.code());
  } catch (...) {
    RemoveFiles(fresh, [] {});
    throw;
  }
  return old.empty() ? fs::path() : ClearOld(old, place, step);
}

}  // namespace quillmate::ui
