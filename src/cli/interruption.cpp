#include "interruption.h"

#include <list>
#include <system_error>

#include <quillmate/files/paths.h>

#include "platform.h"

namespace quillmate::cli {
namespace {

struct Registry {
  std::mutex mutex;
  std::list<std::filesystem::path> leftovers;
};

/// Never destroyed: the watching thread may use it until the process is gone.
Registry& TheRegistry() {
  static auto* const registry = new Registry;
  return *registry;
}

/// A file or link, or a folder with all that it holds; no link is followed.
void RemoveWhole(const std::filesystem::path& path, std::error_code& error) {
  std::error_code none;
  if (!files::IsLink(path) && std::filesystem::is_directory(path, none)) {
    for (const files::FolderEntry& entry : files::FolderEntries(path, none)) {
      RemoveWhole(entry.path, none);
    }
  }
  files::RemovePath(path, error);
}

/// The main thread may still be making files in the folder; it gives up once the folder is gone.
void RemoveForGood(const std::filesystem::path& path) {
  std::error_code error;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    CloseFilesIn(path);
    RemoveWhole(path, error);
    if (!error) {
      return;
    }
  }
}

void RemoveLeftovers() {
  Registry& registry = TheRegistry();
  registry.mutex.lock();  // for good
  for (const auto& path : registry.leftovers) {
    RemoveForGood(path);
  }
}

}  // namespace

void WatchSignals() { OnEndingSignal(RemoveLeftovers); }

RunLock::RunLock() : lock_(TheRegistry().mutex) {}

Leftover::Leftover(const std::function<std::filesystem::path()>& make) {
  const RunLock lock;
  path_ = make();
  if (!path_.empty()) {
    TheRegistry().leftovers.push_back(path_);
  }
}

Leftover::~Leftover() {
  if (path_.empty()) {
    return;
  }
  const RunLock lock;
  std::error_code ignored;
  RemoveWhole(path_, ignored);
  TheRegistry().leftovers.remove(path_);
}

void Leftover::Release(const RunLock& /*lock*/) noexcept {
  TheRegistry().leftovers.remove(path_);
  path_.clear();
}

}  // namespace quillmate::cli
