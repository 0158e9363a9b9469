#pragma once

#include <string>

#include "command_line.h"

namespace quillmate::cli {

/// What a result is called: what --title says, else the name of the only input without its ending.
std::string TitleOf(const Invocation& invocation);

}  // namespace quillmate::cli
