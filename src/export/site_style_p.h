#pragma once

#include <cstdint>
#include <string>

#include <quillmate/text/code_options.h>

namespace quillmate::output {

inline constexpr const char* kStyleFile = "stil.css";

/// The style sheet of a site.
std::string StyleSheet(const text::CodeLook& look);

/// A colour of the user's, made light enough to be read on the dark ground; hue and saturation stay. One that is light
/// enough stays as it is.
std::int32_t ColourOnDark(std::int32_t colour);

}  // namespace quillmate::output
