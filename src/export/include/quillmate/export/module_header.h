#pragma once

#include <string>
#include <string_view>

namespace quillmate::output {

/// The comment block of three lines that project exports put in front of a module, as marked-up text (bold, comment
/// colour). `moduleName` Windows-1252, `imageKey` the module's image key in the project tree; the kind's text is that
/// of the RTF and text exports.
std::string MakeModuleHeader(std::string_view moduleName, std::string_view imageKey);

/// The header as it stands in front of the module's text: two line breaks, the block, two line breaks.
std::string HeaderBlock(std::string_view moduleName, std::string_view imageKey);

}  // namespace quillmate::output
