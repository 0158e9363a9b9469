#include <string>
#include <string_view>

#include <quillmate/export/html.h>

#include "commands.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

/// Line breaks as Qt wants them; it turns them into the platform's.
void PutOnClipboard(Shell& shell, std::string_view code) {
  QString text = FromCode(code);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  shell.around.platform.ClearClipboard();
  shell.around.platform.SetClipboard({text, {}, {}});
  if (shell.Globals().Options.meld) shell.Show("Text in Zwischenablage");
}

}  // namespace

void CopySelectionText(Shell& shell) {
  const std::string code = shell.VisibleSelection();
  if (code.empty()) {
    shell.Show(output::kNothingSelected);
    return;
  }
  PutOnClipboard(shell, code);
}

void CopyModuleText(Shell& shell) {
  const std::string& code = shell.views.View(shell.views.Current()).Text();
  if (!code.empty()) PutOnClipboard(shell, code);
}

}  // namespace quillmate::ui
