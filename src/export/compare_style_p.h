#pragma once

#include <string>

namespace quillmate::output {

/// The style sheet of the report: light, dark, on paper.
std::string CompareStyle();

}  // namespace quillmate::output
