#pragma once

/// How code and tree are shown, set while working and kept for the next run: section "ansicht" of the settings with the
/// flags `zeilennummern` and `quellreihenfolge` ("-1"/"0") and the number `schrift`, points added to the code's font.
namespace quillmate::ui {

class Shell;

void LoadViewSettings(Shell& shell);

/// Line numbers beside the code; on unless the user has switched them off.
void SetLineNumbers(Shell& shell, bool on);
/// Routines in the tree as they stand in the code instead of by name.
void SetSourceOrder(Shell& shell, bool on);
/// Makes the code's font larger or smaller by some points, 0 brings the size of the options back.
void ChangeFont(Shell& shell, int steps);

}  // namespace quillmate::ui
