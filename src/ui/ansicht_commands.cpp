#include "commands.h"
#include "host_list.h"
#include "project_view.h"
#include "shell.h"

namespace quillmate::ui {

void RefreshProjects(Shell& shell) {
  if (!ConfirmUnsaved(shell)) return;
  shell.SetCaption();
  RefreshHostProjects(shell);
}

}  // namespace quillmate::ui
