#include <system_error>
#include <utility>
#include <vector>

#include <quillmate/files/folder_swap.h>
#include <quillmate/files/paths.h>

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

/// Renames, all of which are taken back unless they are kept.
class Renames {
 public:
  Renames() = default;
  Renames(const Renames&) = delete;
  Renames& operator=(const Renames&) = delete;
  ~Renames() {
    for (auto rename = done_.rbegin(); rename != done_.rend(); ++rename) TakeBack(rename->first, rename->second);
  }

  void Rename(const fs::path& from, const fs::path& to) {
    // Before it happens: what is not on the list can't be taken back.
    done_.emplace_back(from, to);
    try {
      RenamePath(from, to);
    } catch (const fs::filesystem_error&) {
      done_.pop_back();
      throw;
    }
  }

  void RenameContent(const fs::path& from, const fs::path& to) {
    std::error_code error;
    const std::vector<FolderEntry> entries = FolderEntries(from, error);
    if (error) throw fs::filesystem_error("list", from, error);
    for (const FolderEntry& entry : entries) Rename(entry.path, to / entry.path.filename());
  }

  void Keep() noexcept { done_.clear(); }

 private:
  static void TakeBack(const fs::path& from, const fs::path& to) noexcept {
    try {
      RenamePath(to, from);
    } catch (const fs::filesystem_error&) {
      // It stays beside the target.
    }
  }

  std::vector<std::pair<fs::path, fs::path>> done_;
};

/// False when a folder is in use: some program has it as its current folder or watches it. Nothing has changed then.
bool SwapWhole(const fs::path& fresh, const fs::path& old, const fs::path& aside) {
  Renames renames;
  try {
    renames.Rename(old, aside);
    renames.Rename(fresh, old);
  } catch (const fs::filesystem_error&) {
    return false;
  }
  renames.Keep();
  return true;
}

void SwapContent(const fs::path& fresh, const fs::path& old, const fs::path& aside) {
  fs::create_directory(aside);
  try {
    Renames renames;
    renames.RenameContent(old, aside);
    renames.RenameContent(fresh, old);
    renames.Keep();
  } catch (const fs::filesystem_error&) {
    std::error_code ignored;
    RemovePath(aside, ignored);
    throw;
  }
  std::error_code ignored;
  RemovePath(fresh, ignored);
}

}  // namespace

fs::path SwapFolders(const fs::path& fresh, const fs::path& old, const fs::path& aside) {
  if (!SwapWhole(fresh, old, aside)) SwapContent(fresh, old, aside);
  return aside;
}

}  // namespace quillmate::files
