#pragma once

#include <span>
#include <string>

#include "invocation.h"

/// The command line: COMMAND [options] INPUT..., options and inputs in any order, "--" ends the options.
namespace quillmate::cli {

/// `arguments` without the program's name. Throws UsageError; `invocation` then holds what was understood so far.
void ParseCommandLine(std::span<const std::string> arguments, Invocation& invocation);

}  // namespace quillmate::cli
