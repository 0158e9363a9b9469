#pragma once

#include "command_line.h"

/// Modules and routines as the understanding has them, where the index knows less. Lines are the editor's.
namespace quillmate::cli {

/// With the fields of the index: as JSON, or as the table of `modules`.
void RunModulesExact(const Invocation& invocation);
/// The outline.
void RunOutlineExact(const Invocation& invocation);

}  // namespace quillmate::cli
