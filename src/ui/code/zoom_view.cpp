#include "zoom_view.h"

#include <quillmate/navigation/zoom.h>

#include "shell.h"

namespace quillmate::ui {

bool IsZoomed(const Shell& shell) { return shell.commands->Item(CommandId::kSwitchZoom).isChecked(); }

void SetZoom(Shell& shell, bool on) {
  if (on) BuildZoom(shell);
  shell.commands->Item(CommandId::kSwitchZoom).setChecked(on);
  const bool hadFocus = shell.Editor().hasFocus();
  shell.codes->setCurrentWidget(on ? shell.rtbZoom : shell.rtbHaupt);
  if (on || hadFocus) shell.Editor().setFocus();
  if (!on) {
    shell.rtbZoom->Forget();
    shell.zoom = {};
  }
}

void BuildZoom(Shell& shell) {
  const int current = shell.views.Current();
  navigation::CodeView& code = shell.views.View(current);
  const long line = static_cast<long>(code.LineFromChar(code.SelStart())) + 1;
  auto text = navigation::BuildZoomView(shell.Globals().CodeDb, code, shell.views.Runs(current), current, line);
  if (!text) return;
  shell.rtbHaupt->ShowSelection();
  shell.rtbZoom->Forget();
  shell.zoom = {navigation::CodeView(std::move(text->text)), std::move(text->runs), code.SelStart()};
  shell.rtbZoom->NumberFrom(static_cast<long>(code.LineFromChar(code.SelStart())) + 1);
  shell.rtbZoom->ShowView(0, shell.zoom.view, shell.zoom.runs);
}

bool RefusedInZoom(Shell& shell) {
  if (!IsZoomed(shell)) return false;
  shell.Show(navigation::kZoomModeText, MessageIcon::kInformation);
  return true;
}

}  // namespace quillmate::ui
