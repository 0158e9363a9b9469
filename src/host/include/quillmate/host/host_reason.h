#pragma once

#include <system_error>

#include <quillmate/files/failure.h>

namespace quillmate::host {

/// Why a call of the host fails: it refuses it, or it comes too late (project closed, component gone, file vanished).
/// What is wrong with a file has the code of the office room.
enum class HostReason {
  kNotRunning = 1,  // %1, the host
  kEnded,           // %1
  kBusy,            // %1, after all the patience
  kNoAnswer,        // %1
  kRefused,         // because of %c, which the host explains by %1; the next call may succeed
  kNotAsked,        // %1
  kNoVersion,       // %1
  kNoAccess,        // %1
  kProjectClosed,   // %1, in the file %2
  kProjectGone,
  kProjectLocked,
  kModulesWithheld,
  kModuleGone,
  kCodeWithheld,  // %1
  kModuleChanged,
  kOtherModule,
  kNotInFile,
  kNoFile,
  kNoCode,      // %1
  kNothingRead  // %1
};
std::error_code make_error_code(HostReason reason) noexcept;

}  // namespace quillmate::host

template <>
struct std::is_error_code_enum<quillmate::host::HostReason> : std::true_type {};
