#pragma once

#include <string>

/// Lets a chosen call to the operating system fail, or the process be killed in front of it. Linked into a program, or
/// preloaded as a library, it is in front of the system's own functions that change files: each such call on a
/// path below a folder is a fault point, numbered from 1.
namespace quillmate::faults {

enum class Fault {
  kNone,      // points are counted
  kKill,      // the process is killed
  kError,     // one call fails with EIO
  kFullDisk,  // this call and all later ones that need room fail with ENOSPC
};

struct FaultPlan {
  Fault fault = Fault::kNone;
  int at = 0;
  /// Calls on other paths pass uncounted. Without links, absolute.
  std::string below{};
  /// False: the file system has no second names for a file.
  bool secondNames = true;
  /// A folder in which no name is made or changed, though files can be written; empty: none.
  std::string fixed{};
};

/// Counts from 1 again. Flushes are counted and not done: nothing cuts the power here.
void Arm(const FaultPlan& plan);
/// Points that were passed since.
int PointsPassed();

}  // namespace quillmate::faults
