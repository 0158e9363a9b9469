#include "commands.h"
#include "host_list.h"
#include "project_view.h"
#include "shell.h"
#include "tree_filter.h"
#include "view_settings.h"

namespace quillmate::ui {

void RefreshProjects(Shell& shell) {
  if (!ConfirmUnsaved(shell)) return;
  shell.SetCaption();
  RefreshHostProjects(shell);
  OfferToForgetUnreadable(shell);
}

void SwitchZoom(Shell& shell) { SetZoom(shell, !IsZoomed(shell)); }

void CloseCallerList(Shell& shell) { CloseCallers(shell); }

void FilterTree(Shell& shell) {
  CloseCallers(shell);
  shell.treeFilter->setFocus();
  shell.treeFilter->selectAll();
}

void SwitchLineNumbers(Shell& shell) {
  SetLineNumbers(shell, !shell.commands->Item(CommandId::kSwitchLineNumbers).isChecked());
}

void SwitchSourceOrder(Shell& shell) {
  SetSourceOrder(shell, !shell.commands->Item(CommandId::kSwitchSourceOrder).isChecked());
}

void EnlargeFont(Shell& shell) { ChangeFont(shell, 1); }

void ReduceFont(Shell& shell) { ChangeFont(shell, -1); }

void ResetFont(Shell& shell) { ChangeFont(shell, 0); }

}  // namespace quillmate::ui
