#pragma once

#include <string>
#include <string_view>

#include <quillmate/export/html.h>
#include <quillmate/settings/options.h>

namespace quillmate::ui {

class Shell;

/// Whether project exports carry a header block in front of each module. The options dialog shows the switch; nothing
/// changes it.
inline constexpr bool kModuleHeaders = true;

/// Puts finished HTML (Windows-1252) on the clipboard as plain text; asks for the credit line and shows the preview as
/// the options say.
void DeliverHtml(Shell& shell, std::string html);

/// Code that is in no index (Windows-1252, CR LF): marked up, turned into HTML and delivered.
void DeliverCode(Shell& shell, std::string_view code);

}  // namespace quillmate::ui
