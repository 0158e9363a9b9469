#pragma once

#include <vector>

#include <quillmate/navigation/code_view.h>

/// The zoom view `rtbZoom`: only the routine at the caret, over the code view.
namespace quillmate::ui {

class Shell;

/// What the zoom view shows: a stretch of the visible module.
struct ZoomText {
  navigation::CodeView view;
  std::vector<navigation::StyleRun> runs;
  /// Offset in the module's text.
  std::size_t start = 0;
};

bool IsZoomed(const Shell& shell);
/// Shows or hides the zoom view, with the menu item and the button that go with it. Throws when the index can't be
/// asked; zoom is off then.
void SetZoom(Shell& shell, bool on);
/// Fills the zoom view with what the caret of the visible code view stands in.
void BuildZoom(Shell& shell);
/// True when zoom is on, after telling the user that the command does not work then.
bool RefusedInZoom(Shell& shell);

}  // namespace quillmate::ui
