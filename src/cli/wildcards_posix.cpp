#include "wildcards.h"

namespace quillmate::cli {

std::vector<std::string> ExpandWildcards(const std::vector<std::string>& inputs) { return inputs; }

}  // namespace quillmate::cli
