#pragma once

#include <vector>

#include <quillmate/checks/checks.h>

namespace quillmate::checks {

/// Drops what a comment silences: `' quillmate: ignore ID, ID`, at the end of the line (of any physical line of a
/// continued one) or on lines of their own above it. Without an id it silences everything. `findings` by module.
void RemoveSilenced(const symbols::ReferenceIndex& index, std::vector<Finding>& findings);

}  // namespace quillmate::checks
