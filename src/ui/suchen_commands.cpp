#include <QLayout>

#include "commands.h"
#include "hit_panel.h"
#include "qt_text.h"
#include "search_bar.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

void Toggle(Shell& shell, CommandId command) {
  QAction& item = shell.commands->Item(command);
  item.setChecked(!item.isChecked());
}

}  // namespace

void SearchFromTop(Shell& shell) { ShowSearchResult(shell, navigation::FindFirst(shell.views, CurrentRequest(shell))); }

void SearchOn(Shell& shell) { ShowSearchResult(shell, navigation::FindNext(shell.views, CurrentRequest(shell))); }

void SwitchProjectSearch(Shell& shell) { Toggle(shell, CommandId::kSwitchProjectSearch); }

void SwitchWholeWord(Shell& shell) { Toggle(shell, CommandId::kSwitchWholeWord); }

void TakeSearchText(Shell& shell) {
  const std::string selected = shell.VisibleSelection();
  if (!selected.empty()) shell.txtSuche->setText(FromCode(selected));
}

void EnterSearchText(Shell& shell) {
  // The list of callers hides the toolbar, and a narrow window its end.
  QToolBar& bar = shell.commands->ToolBar();
  bar.show();
  if (bar.width() < bar.sizeHint().width() && !shell.txtSuche->isVisible()) {
    shell.window.resize(bar.sizeHint().width(), shell.window.height());
  }
  shell.window.layout()->activate();
  shell.txtSuche->setFocus();
  shell.txtSuche->selectAll();
}

void ListAllHits(Shell& shell) { shell.hits->Open(shell.txtSuche->text()); }

}  // namespace quillmate::ui
