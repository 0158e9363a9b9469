#pragma once

#include <system_error>

#include <quillmate/files/failure.h>

namespace quillmate::output {

/// Why something is not written, where it is not the system's matter.
enum class OutputReason {
  kNoSite = 1,   // a folder that holds something else
  kForeignFile,  // in the folder of a documentation
  kNoWorkbook    // because of what it is made of
};
std::error_code make_error_code(OutputReason reason) noexcept;

}  // namespace quillmate::output

template <>
struct std::is_error_code_enum<quillmate::output::OutputReason> : std::true_type {};
