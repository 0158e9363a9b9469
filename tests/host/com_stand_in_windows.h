#pragma once

#include <string>

#include "windows/child_process.h"

namespace quillmate::host {

/// A stand-in for a running Office program as a process of its own. It is there when the constructor is through, and
/// ends with this object at the latest.
class StandInHost {
 public:
  /// `arguments` as on the command line, UTF-8. Throws std::runtime_error when it does not come up.
  explicit StandInHost(const std::string& arguments);
  ~StandInHost();
  StandInHost(const StandInHost&) = delete;
  StandInHost& operator=(const StandInHost&) = delete;

  /// Makes it end, waits for that and gives what it said in the end.
  std::string End();
  /// Waits until it has ended by itself; its exit code.
  DWORD WaitForEnd() const;

 private:
  std::string ReadLine() const;

  child::Handle process_;
  child::Handle input_;
  child::Handle output_;
};

}  // namespace quillmate::host
