#pragma once

#include <quillmate/symbols/reference_index.h>

#include "command_line.h"

namespace quillmate::cli {

/// What the inputs' code means, sources or a saved project: every module, those of one or two lines too. What can't be
/// read is named on standard error; throws CommandFailure when nothing is left.
symbols::ReferenceIndex ReadUnderstanding(const Invocation& invocation);

}  // namespace quillmate::cli
