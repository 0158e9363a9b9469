#include <algorithm>
#include <list>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_lock.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/work_folder.h>

#include "exchange_p.h"
#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

/// Holds the name of the scratch root, without which the program deletes nothing.
constexpr std::string_view kPrefix = ".Quillmate-TempDateien-";
constexpr const char* kLockFile = "lock";
/// Other runs may take a new folder for an abandoned one before it is locked; where nothing can be locked none does.
constexpr int kMostAttempts = 16;
/// Somebody may still be making files in a folder that is being removed at the end.
constexpr int kMostRemovals = 1000;

struct Registry {
  std::mutex mutex;
  std::list<fs::path> folders;
};

/// Never destroyed: the thread that ends the process may use it until the process is gone.
Registry& TheRegistry() {
  static auto* const registry = new Registry;
  return *registry;
}

std::string RandomName() {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  constexpr int kLength = 12;
  std::random_device random;
  std::uniform_int_distribution<std::size_t> letter(0, kLetters.size() - 1);
  std::string name(kPrefix);
  for (int i = 0; i < kLength; ++i) name += kLetters[letter(random)];
  return name;
}

/// The lock goes last: a folder without one is empty.
std::error_code RemoveContent(const fs::path& folder) {
  std::error_code listing;
  std::error_code failure;
  for (const FolderEntry& entry : FolderEntries(folder, listing)) {
    if (entry.path.filename() == kLockFile) continue;
    std::error_code error;
    if (entry.isFolder && !entry.isLink) {
      RemoveFolder(entry.path, error);
    } else {
      RemovePath(entry.path, error);
    }
    if (error) failure = error;
  }
  return failure;
}

/// Gives up the lock as soon as nothing is left that it protects: some systems remove no open file.
std::error_code RemoveWorkFolder(const fs::path& folder, std::optional<FileLock>& lock) {
  if (HasOpenExchange(folder)) return {};
  if (const std::error_code error = RemoveContent(folder)) return error;
  std::error_code error;
#ifdef _WIN32
  lock.reset();
#endif
  RemovePath(folder / kLockFile, error);
  lock.reset();
  RemovePath(folder, error);
  return error;
}

/// Locked, and still the one that others see.
bool Seize(const fs::path& folder, std::optional<FileLock>& lock) {
  lock.emplace(folder / kLockFile);
  if (lock->TryExclusive() && Exists(folder / kLockFile)) return true;
  lock.reset();
  return false;
}

bool IsWorkFolder(const FolderEntry& entry) {
  return entry.isFolder && !entry.isLink && PathText(entry.path.filename()).starts_with(kPrefix) && IsOwn(entry.path);
}

fs::path MakeFolderIn(const fs::path& place, WorkFolder::Access access) {
#ifdef _WIN32
  const auto make = access == WorkFolder::Access::kPrivate ? MakePrivateFolder : MakeFolder;
#else
  // What is made in it gets the rights of the place all the same when it goes there.
  static_cast<void>(access);
  const auto make = MakePrivateFolder;
#endif
  for (;;) {
    fs::path folder = place / RandomName();
    const std::error_code error = make(folder);
    if (!error) return folder;
    if (error != std::errc::file_exists) throw Failure(FileAction::kWrite, place, error);
  }
}

}  // namespace

struct WorkFolder::State {
  fs::path path;
  std::optional<FileLock> lock;
};

WorkFolder::WorkFolder(const fs::path& place, Access access) : state_(std::make_unique<State>()) {
  MendFolder(place);
  const EndGuard guard;
  for (int attempt = 1;; ++attempt) {
    state_->path = MakeFolderIn(place, access);
    if (Seize(state_->path, state_->lock) || attempt == kMostAttempts) break;
    std::error_code ignored;
    RemovePath(state_->path / kLockFile, ignored);
    RemovePath(state_->path, ignored);
  }
  Hide(state_->path);
  TheRegistry().folders.push_back(state_->path);
}

WorkFolder::~WorkFolder() {
  const EndGuard guard;
  RemoveWorkFolder(state_->path, state_->lock);
  TheRegistry().folders.remove(state_->path);
}

const fs::path& WorkFolder::Path() const noexcept { return state_->path; }

void MendFolder(const fs::path& place) noexcept try {
  std::error_code ignored;
  for (const FolderEntry& entry : FolderEntries(place, ignored)) {
    std::optional<FileLock> lock;
    if (!IsWorkFolder(entry) || !Seize(entry.path, lock)) continue;
    FinishExchange(entry.path);
    RemoveWorkFolder(entry.path, lock);
  }
} catch (const std::exception&) {
  // The next run tries again.
}

EndGuard::EndGuard() : lock_(TheRegistry().mutex) {}

void RemoveWorkFolders() noexcept try {
  Registry& registry = TheRegistry();
  registry.mutex.lock();  // for good
  for (const fs::path& folder : registry.folders) {
    std::optional<FileLock> none;
    for (int attempt = 0; attempt < kMostRemovals && Exists(folder); ++attempt) {
      CloseFilesIn(folder);
      if (!RemoveWorkFolder(folder, none)) break;
    }
  }
} catch (const std::exception&) {
  // What is left is for the next run.
}

}  // namespace quillmate::files
