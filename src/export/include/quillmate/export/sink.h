#pragma once

#include <functional>
#include <string_view>

namespace quillmate::output {

/// Takes the next bytes of an export. The bytes are valid during the call only; what a sink throws ends the export.
using Sink = std::function<void(std::string_view)>;

}  // namespace quillmate::output
