#pragma once

#include <string>

#include <quillmate/project/compared_state.h>

#include "invocation.h"

namespace quillmate::cli {

/// One side of a comparison: an Office file, a module file, a VB project, a folder, a saved project, "git:REV:PATH".
/// What can't be read is named on standard error. Throws CommandFailure and files::Failure when there is nothing to
/// compare.
project::ReadState ReadComparedState(const Invocation& invocation, const std::string& input);

}  // namespace quillmate::cli
