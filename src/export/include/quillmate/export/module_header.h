#pragma once

#include <string>
#include <string_view>

namespace quillmate::output {

/// The type line of a module in the RTF and text exports, by the module's image key in the project tree ("M1", "M2",
/// ...); empty for a kind without one.
std::string_view TypeLine(std::string_view imageKey);

/// The comment block of three lines that project exports put in front of a module, as marked-up text (bold, comment
/// colour). `moduleName` Windows-1252, `imageKey` the module's image key in the project tree; the kind's text is that
/// of the RTF and text exports.
std::string MakeModuleHeader(std::string_view moduleName, std::string_view imageKey);
/// The same with a type line of the caller's. The name goes in first: a "yyyyy" in it becomes the type line, too.
std::string MakeModuleHeaderWithType(std::string_view moduleName, std::string_view typeLine);

/// The header as it is in front of the module's text: two line breaks, the block, two line breaks.
std::string HeaderBlock(std::string_view moduleName, std::string_view imageKey);
std::string HeaderBlockWithType(std::string_view moduleName, std::string_view typeLine);

}  // namespace quillmate::output
