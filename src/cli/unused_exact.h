#pragma once

#include "command_line.h"

namespace quillmate::cli {

/// `unused --exact`: everything of every kind that nobody uses, with its grade and its reason.
void RunUnusedExact(const Invocation& invocation);

}  // namespace quillmate::cli
