#pragma once

#include <string>
#include <string_view>

#include <quillmate/export/html.h>

/// The parts of a piece of HTML, for texts that come in several parts.
namespace quillmate::output {

/// "<pre>" and the font span.
std::string HtmlHead(const HtmlOptions& options);
void HtmlBody(std::string_view markedText, const HtmlOptions& options, const Sink& sink);
inline constexpr std::string_view kHtmlEnd = "</span></pre>";

}  // namespace quillmate::output
