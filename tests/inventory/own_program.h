#pragma once

#include <string>
#include <vector>

namespace quillmate::inventory {

/// The command that makes this very program a reader.
std::vector<std::string> OwnReader();

}  // namespace quillmate::inventory
