#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_view.h>

namespace quillmate::navigation {

/// Shown by commands that do not work in zoom mode; UTF-8.
inline constexpr std::string_view kZoomModeText = "Steht im Zoom Modus nicht zur Verfügung";

struct LineRange {
  codedb::Line first;
  codedb::Line last;
};

/// What the zoom view shows for a line of a module: the routine that the line is in or else the module's
/// declarations, which end before its first routine. The last line may be 0, when a routine begins on line 1; it is
/// `lineCount`, the module's last line, when the module has no routine. Throws files::Failure.
LineRange ZoomLines(codedb::CodeDatabase& database, codedb::Line line, codedb::ModuleNumber module,
                    codedb::Line lineCount);

/// The content of the zoom view `rtbZoom` for a line of the view with that index: from the first
/// character of the range to the line break of its last line, with its colouring. A last line 0 counts as line 1. The
/// view's selection is then the first character of the range. Nothing when the range has no first line; the view stays
/// as it is. `runs` is the view's colouring. Throws files::Failure.
std::optional<PlainModule> BuildZoomView(codedb::CodeDatabase& database, CodeView& view,
                                         const std::vector<StyleRun>& runs, codedb::ViewIndex index, codedb::Line line);

}  // namespace quillmate::navigation
