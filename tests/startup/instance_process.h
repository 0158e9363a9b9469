#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace quillmate::startup {

/// A process in which an instance of the program starts, tells how, and runs on until it is told to end.
class InstanceProcess {
 public:
  explicit InstanceProcess(const std::filesystem::path& programFolder);
  ~InstanceProcess();
  InstanceProcess(const InstanceProcess&) = delete;
  InstanceProcess& operator=(const InstanceProcess&) = delete;

  /// Waits for the end of the start: "1" or "0", whether it is alone, and the run's folder (UTF-8).
  std::string AwaitNews();
  /// Both wait until the process is gone.
  void End();
  void Kill();

 private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

/// What happens in such a process.
void RunInstance(const std::filesystem::path& programFolder, const std::function<void(const std::string&)>& tell,
                 const std::function<bool()>& awaitOrderToEnd);

/// The locks that a newcomer would get: "", "shared", "exclusive shared".
std::string FreeLocks(const std::filesystem::path& scratchRoot);

}  // namespace quillmate::startup
