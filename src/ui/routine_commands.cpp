#include <string>

#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/identifier.h>

#include "caller_list.h"
#include "commands.h"
#include "qt_text.h"
#include "shell.h"
#include "whereabouts.h"
#include "zoom_view.h"

namespace quillmate::ui {
namespace {

/// Goes to where a name is defined; false after telling that it is unknown.
bool GoToDefinition(Shell& shell, std::string_view name) {
  const auto found = navigation::FindDefinition(shell.Globals().CodeDb, shell.views.Current(), name);
  if (!found) {
    shell.Show(navigation::kUnknownIdentifierText);
    return false;
  }
  if (!found->sameModule) ShowModule(shell, found->moduleNumber - 1);
  if (found->startLine > 0) shell.views.View(shell.views.Current()).GoToLine(found->startLine);
  return true;
}

/// The place that the jump began at becomes the one that Back returns to.
void Jump(Shell& shell, std::string_view name, std::size_t from) {
  if (!GoToDefinition(shell, name)) return;
  shell.whereabouts.history.MoveCaret(from);
  RefreshStatus(shell);
  PushPlace(shell);
  shell.views.View(shell.views.Current()).SelectFirstWordOfLine();
  shell.rtbHaupt->ShowSelection();
}

}  // namespace

void ShowDefinition(Shell& shell) {
  if (RefusedInZoom(shell)) return;
  const navigation::CodeView& view = shell.views.View(shell.views.Current());
  const std::string name(navigation::IdentifierAtCaret(view.Text(), view.Caret()));
  if (!name.empty()) Jump(shell, name, view.Caret());
  shell.rtbHaupt->setFocus();
}

void FindRoutineCallers(Shell& shell) {
  const QString routine = shell.staBar->Text(StatusPanels::kRoutine);
  if (routine.isEmpty()) return;
  navigation::Callers callers;
  {
    const Working working(shell);
    callers = navigation::FindCallers(shell.Globals().CodeDb, shell.whereabouts.texts, shell.views.Current(),
                                      ToCode(routine));
  }
  const std::string_view message = navigation::ScopeMessage(callers.scope);
  if (!message.empty()) {
    shell.Show(message,
               callers.scope == navigation::CallerScope::kFailed ? MessageIcon::kNone : MessageIcon::kExclamation);
    return;
  }
  ShowCallers(shell, std::move(callers.tree), routine);
}

void GoBack(Shell& shell) { Step(shell, StatusPanels::kBack); }

void GoNext(Shell& shell) { Step(shell, StatusPanels::kNext); }

}  // namespace quillmate::ui
