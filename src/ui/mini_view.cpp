#include "mini_view.h"

#include "commands.h"
#include "shell.h"

namespace quillmate::ui {

void ShowMini(Shell& shell) {
  shell.mini = std::make_unique<MiniWindow>();
  shell.mini->setWindowTitle(shell.window.windowTitle());
  shell.mini->setWindowIcon(shell.window.windowIcon());
  shell.mini->onHtml = [&shell] { shell.Guarded([&shell] { ExportClipboardHtml(shell); }); };
  shell.mini->onReturn = [&shell] { shell.window.show(); };
  shell.mini->onEnd = [&shell] { shell.window.Unload(); };
  shell.mini->show();
}

void ShowSpecialView(Shell& shell) {
  shell.window.hide();
  ShowMini(shell);
}

}  // namespace quillmate::ui
