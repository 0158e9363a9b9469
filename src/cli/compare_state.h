#pragma once

#include <string>

#include <quillmate/symbols/compare.h>

#include "command_line.h"

namespace quillmate::cli {

struct ReadState {
  symbols::ComparedState state;
  /// Something of it could not be read, and was named on standard error.
  bool isWhole = true;
};

/// One side of a comparison: an Office file, a module file, a VB project, a folder, a saved project, "git:REV:PATH".
/// Throws CommandFailure when there is nothing to compare.
ReadState ReadComparedState(const Invocation& invocation, const std::string& input);

}  // namespace quillmate::cli
