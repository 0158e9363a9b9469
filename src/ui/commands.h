#pragma once

#include <cstddef>

#include "command_table.h"

/// The handlers of the commands, one source file for each menu. A handler may throw: the window shows what
/// happened and leaves everything as it was.
namespace quillmate::ui {

class Shell;

/// Runs the handler of a command.
void RunCommand(Shell& shell, CommandId command);

// Datei
void OpenSavedProject(Shell& shell);
void StartAnew(Shell& shell);
void SaveProjectAs(Shell& shell);
void AddFiles(Shell& shell);
void AddFolder(Shell& shell);
void RemoveSource(Shell& shell);
/// The project at a 0-based position of the list of recent projects.
void OpenRecent(Shell& shell, std::size_t position);
void EndProgram(Shell& shell);

// Bearbeiten
void ReadCode(Shell& shell);
void ReadVbFiles(Shell& shell);
void CopyModule(Shell& shell);
void CopySelection(Shell& shell);
void SearchFromTop(Shell& shell);
void SearchOn(Shell& shell);
void SwitchProjectSearch(Shell& shell);
void SwitchWholeWord(Shell& shell);
void TakeSearchText(Shell& shell);
void EnterSearchText(Shell& shell);
void ListAllHits(Shell& shell);
void FindRoutineCallers(Shell& shell);
void ShowDefinition(Shell& shell);
void GoBack(Shell& shell);
void GoNext(Shell& shell);

// Ansicht
void RefreshProjects(Shell& shell);
void SwitchZoom(Shell& shell);
void CloseCallerList(Shell& shell);
void FilterTree(Shell& shell);
void SwitchLineNumbers(Shell& shell);
void SwitchSourceOrder(Shell& shell);
void EnlargeFont(Shell& shell);
void ReduceFont(Shell& shell);
void ResetFont(Shell& shell);
void ShowSpecialView(Shell& shell);

// HTML
void ExportClipboardHtml(Shell& shell);
void ExportSelectionHtml(Shell& shell);
void ExportModuleHtml(Shell& shell);
void ExportProjectHtml(Shell& shell);
void ExportZoomHtml(Shell& shell);
void WriteDocumentation(Shell& shell);

// RTF
void ExportModuleRtf(Shell& shell);
void ExportProjectRtf(Shell& shell);

// Nur-Text
void CopySelectionText(Shell& shell);
void CopyModuleText(Shell& shell);

// Extras
void ShowOptions(Shell& shell);
void ShowUnusedRoutines(Shell& shell);
void CopyOutline(Shell& shell);
void StoreDisplaySize(Shell& shell);
void ApplyStoredDisplaySize(Shell& shell);
void ClearClipboard(Shell& shell);

// Hilfe
void ShowHelp(Shell& shell);
void ShowAbout(Shell& shell);

}  // namespace quillmate::ui
