#pragma once

#include <string>
#include <string_view>

#include "site_links_p.h"

/// Marked-up code as HTML of a page: UTF-8 with LF, balanced tags on each line whatever the markers do.
namespace quillmate::output {

/// Appends the whole code of a module: each line with its number and the anchor "z" + number, routines with the anchor
/// "c-", names as links. `markedText` is without the line breaks that storing has added.
void AppendModuleCode(std::string& html, std::string_view markedText, int module, const SiteContents& site);

/// Appends a piece of code with its colours only.
void AppendPlainCode(std::string& html, std::string_view markedText);

}  // namespace quillmate::output
