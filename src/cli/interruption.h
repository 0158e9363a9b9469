#pragma once

#include <filesystem>
#include <functional>
#include <mutex>

/// Ending a run early. A signal that ends the process (Ctrl+C, the system's request to end, a closed terminal) first
/// removes what the run has left half done.
namespace quillmate::cli {

/// Begins to watch for the signals. To be called once, before any other thread is started.
void WatchSignals();

/// While it is held no signal ends the run. Whoever waits for it while a signal is ending the run waits for ever, so
/// that nothing is said or put in place any more. Hold it for moments only, and only once in a call chain.
class RunLock {
 public:
  RunLock();

 private:
  std::unique_lock<std::mutex> lock_;
};

/// A file or folder that must not outlive the run: removed, a folder with all it holds, by the destructor or by a
/// signal, unless released before.
class Leftover {
 public:
  /// `make` makes the file or folder and gives its path, an empty one when it could not; no signal comes between.
  explicit Leftover(const std::function<std::filesystem::path()>& make);
  ~Leftover();
  Leftover(const Leftover&) = delete;
  Leftover& operator=(const Leftover&) = delete;

  const std::filesystem::path& Path() const noexcept { return path_; }
  /// It stays from now on. `lock` shows that no signal comes between putting it in place and this call.
  void Release(const RunLock& lock) noexcept;

 private:
  std::filesystem::path path_;
};

}  // namespace quillmate::cli
