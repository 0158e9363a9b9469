#pragma once

#include <QStringList>

/// The handlers of the command table, one source file for each menu. A handler may throw: the window shows what
/// happened and leaves everything as it was.
namespace quillmate::ui {

class Shell;

// Datei
void StartAnew(Shell& shell);
void SaveProjectAs(Shell& shell);
void AddFiles(Shell& shell);
void AddFolder(Shell& shell);
void RemoveSource(Shell& shell);
void EndProgram(Shell& shell);

// Bearbeiten
void ReadCode(Shell& shell);
void ReadVbFiles(Shell& shell);
void CopyModule(Shell& shell);
void CopySelection(Shell& shell);

// Ansicht
void RefreshProjects(Shell& shell);

// Extras
void CopyOutline(Shell& shell);
void StoreDisplaySize(Shell& shell);
void ApplyStoredDisplaySize(Shell& shell);
void ClearClipboard(Shell& shell);

}  // namespace quillmate::ui
