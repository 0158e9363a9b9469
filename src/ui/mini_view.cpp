#include "mini_view.h"

#include <QWindow>

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
  // Given as a wish, the place is kept: the window comes back where it was, not where the desktop puts a new one.
  QWindow& main = *shell.window.windowHandle();
  main.setGeometry(main.geometry());
  shell.window.hide();
  ShowMini(shell);
}

}  // namespace quillmate::ui
