#pragma once

#include <string>
#include <string_view>

namespace quillmate::output {

/// Marked-up text without its markers: the code as the code view shows it, Windows-1252.
std::string PlainText(std::string_view markedText);

}  // namespace quillmate::output
