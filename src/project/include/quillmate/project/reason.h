#pragma once

#include <system_error>

#include <quillmate/files/failure.h>

namespace quillmate::project {

/// Why a project, or a state to be compared, can't be had.
enum class ProjectReason {
  kNoModule = 1,  // in %1, the place as the user knows it
  kNotRead,       // %1, such a place with the reason
  kManyModules    // more than %1, which the window can show
};
std::error_code make_error_code(ProjectReason reason) noexcept;

}  // namespace quillmate::project

template <>
struct std::is_error_code_enum<quillmate::project::ProjectReason> : std::true_type {};
