#pragma once

#include <string_view>

namespace quillmate::output {

/// What suche.js does with its `data`; the comment of SiteSearch tells what that is.
extern const std::string_view kSearchProgram;

}  // namespace quillmate::output
