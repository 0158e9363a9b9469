#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace quillmate::startup {

/// An instance of the program in a process of its own. It starts when it is made and runs until it is ended or killed.
class Instance {
 public:
  explicit Instance(const std::filesystem::path& programFolder);
  ~Instance() { End(); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  /// Waits for the end of the start.
  void AwaitStart();
  /// Both wait until the process is gone.
  void End();
  void Kill();

  /// What it told about itself.
  bool alone = false;
  std::filesystem::path folder;

 private:
  struct Handles;
  std::string AwaitNews();

  std::shared_ptr<Handles> handles_;
};

/// What happens in such a process. It tells "1" or "0", whether it is alone, and the run's folder (UTF-8).
void RunInstance(const std::filesystem::path& programFolder, const std::function<void(const std::string&)>& tell,
                 const std::function<bool()>& awaitOrderToEnd);

/// The locks that a newcomer would get: "", "shared", "exclusive shared".
std::string FreeLocks(const std::filesystem::path& scratchRoot);

}  // namespace quillmate::startup
