#pragma once

#include <quillmate/navigation/caret_tracking.h>
#include <quillmate/navigation/history.h>
#include <quillmate/navigation/project_texts.h>

/// Where the user is in the code: module and routine in the status bar, the mark in the tree, and the way back.
namespace quillmate::ui {

class Shell;

struct Whereabouts {
  /// Lives as long as the window, over the projects that come and go.
  navigation::RoutineHistory history;
  navigation::CaretTracker caret;
  /// The project's texts for the search of callers.
  navigation::ProjectTexts texts;
};

void WireWhereabouts(Shell& shell);

/// The project on screen has become another one, or none: nothing of the one before may stay.
void StartWhereabouts(Shell& shell);

/// Shows a view without moving its caret. Throws when the module's text can't be read; nothing changes then.
void ShowModule(Shell& shell, int view);
/// The caret of the visible view was moved by the program: shows its place, in the zoom view when zoom is on, and gives
/// the code the focus.
void ShowPlace(Shell& shell);

/// Panels 1 and 2 and the mark follow the caret.
void RefreshStatus(Shell& shell);
void MarkVisibleModule(Shell& shell);

/// Adds the caret's place to the history, with the texts of panels 1 and 2.
void PushPlace(Shell& shell);
/// The arrows and their menu items show whether there is a way back and on.
void ShowSteps(Shell& shell);
/// One place back or on: `panel` is the number of the arrow.
void Step(Shell& shell, int panel);

}  // namespace quillmate::ui
