#pragma once

#include <system_error>

namespace quillmate::files {

/// A number of the system's as every system names that reason; as it is where only Windows knows it.
std::error_code ErrorOf(unsigned long code) noexcept;
/// The reason of the call that has just failed.
std::error_code LastError() noexcept;

}  // namespace quillmate::files
