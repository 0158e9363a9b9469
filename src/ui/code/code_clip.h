#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/navigation/code_view.h>
#include <quillmate/ui/platform.h>

#include "code_style.h"

namespace quillmate::ui {

/// A stretch of a module: `start` and `length` are 0-based characters of the module's text.
struct CodeStretch {
  const std::string& text;
  const std::vector<navigation::StyleRun>& runs;
  std::size_t start = 0;
  std::size_t length = 0;
};

/// The stretch as marked-up text, for the RTF.
std::string MarkedUp(const CodeStretch& stretch);
/// The stretch as a fragment of HTML that keeps colours, blanks and line breaks wherever it is pasted.
QString ClipHtml(const CodeStretch& stretch, const CodeStyle& style);
/// Code as plain text. Line breaks are LF; the clipboard has them as the platform wants them.
QString ClipText(std::string_view code);
/// Plain text, RTF and HTML together, with line breaks as above.
ClipboardContent ClipOf(const CodeStretch& stretch, const CodeStyle& style);

}  // namespace quillmate::ui
