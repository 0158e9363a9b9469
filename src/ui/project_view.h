#pragma once

/// The loaded project on screen: tree, code views and what a click in the tree shows.
namespace quillmate::ui {

class Shell;

/// Opens the index in the current project folder and shows its tree and its first module. When the index can't be used
/// the user is told so; what was on screen stays, and the answer is false.
bool ReloadProject(Shell& shell);

/// Back to the state without a project: the index is closed, the run's scratch folder emptied and current again, the
/// host tree on screen.
void ResetProject(Shell& shell);

/// Shows a node of the project tree: the top of a module, or the first line of a routine. Throws when the module's text
/// can't be read; nothing changes then.
void ShowNode(Shell& shell, int node);

/// Asks whether an unsaved project is to be saved first. False when the command must not go on.
bool ConfirmUnsaved(Shell& shell);

}  // namespace quillmate::ui
