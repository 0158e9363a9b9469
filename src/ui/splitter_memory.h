#pragma once

namespace quillmate::ui {

class Shell;

/// Where the bar between tree and code stands, kept for the next run: section "ansicht" of the settings, key "teiler",
/// the tree's width in twips. A width that does not fit the window is left out of account.
void LoadSplitterPlace(Shell& shell);
void SaveSplitterPlace(Shell& shell);

}  // namespace quillmate::ui
