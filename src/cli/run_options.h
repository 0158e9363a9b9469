#pragma once

#include <string>

#include <quillmate/settings/options.h>

#include "invocation.h"

namespace quillmate::cli {

/// The settings of this run: the defaults or, when asked for, the user's stored ones, with the single settings of the
/// command line on top. The user's settings are only read.
settings::Options RunOptions(const Invocation& invocation);

/// What a result is called: what --title says, else the name of the only input without its ending.
std::string TitleOf(const Invocation& invocation);

}  // namespace quillmate::cli
