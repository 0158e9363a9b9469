#pragma once

#include <string>
#include <string_view>

namespace quillmate::analysis {

/// Gives a module a uniform block indentation: the code's own indentation is thrown away (every TAB of the text,
/// those in literals included) and each line gets one TAB per block level. Lines are never joined or split; blank
/// lines become empty. Lines are separated by CR LF; what is after the last CR LF stays as it is.
///
/// Block words count only as the editor writes them ("End If", not "END IF"). A single-line If and the lines of a
/// continued statement keep the offset of the line before them.
std::string ReflowModule(std::string_view text);

}  // namespace quillmate::analysis
