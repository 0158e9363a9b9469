#pragma once

#include <string>
#include <string_view>

namespace quillmate::analysis {

/// A module's marked-up text as the search for references sees it, of the same length: header lines, keywords, string
/// literals and comments are blanked out. The last characters of closing markers stay. A part that is never closed runs
/// to the end of the text.
std::string PrepareReferenceText(std::string_view markedText);

}  // namespace quillmate::analysis
