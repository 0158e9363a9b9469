#pragma once

namespace quillmate::ui {

class Shell;

/// Shows the mini window; it leads back to the main window, or ends the program.
void ShowMini(Shell& shell);

}  // namespace quillmate::ui
