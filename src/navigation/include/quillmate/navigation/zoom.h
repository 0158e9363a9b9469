#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_view.h>

namespace quillmate::navigation {

/// Shown by commands that do not work in zoom mode; UTF-8.
inline constexpr std::string_view kZoomModeText = "Steht im Zoom Modus nicht zur Verfügung";

/// 1-based lines of the stored text.
struct LineRange {
  long first = 0;
  long last = 0;
};

/// What the zoom view shows for a 1-based line of a module: the routine that the line lies in or else the module's
/// declarations, which end before its first routine. The last line may be 0, when a routine begins on line 1; it is
/// `lineCount`, the module's last line, when the module has no routine. Throws codedb::DatabaseError.
LineRange ZoomLines(codedb::CodeDatabase& database, long line, int moduleNumber, long lineCount);

/// The content of the zoom view `rtbZoom` for a 1-based line of the view with that 0-based index: from the first
/// character of the range to the line break of its last line, with its colouring. A last line 0 counts as line 1. The
/// view's selection is then the first character of the range. Nothing when the range has no first line; the view stays
/// as it is. `runs` is the view's colouring. Throws codedb::DatabaseError.
std::optional<PlainModule> BuildZoomView(codedb::CodeDatabase& database, CodeView& view,
                                         const std::vector<StyleRun>& runs, int index, long line);

}  // namespace quillmate::navigation
