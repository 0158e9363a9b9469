#include "code_menu.h"

#include <quillmate/navigation/identifier.h>

#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

/// An entry that needs a name: with it in the caption, or off.
struct NamedEntry {
  CommandId command;
  const char* plain;
  const char* before;
};

constexpr NamedEntry kDefinition = {CommandId::kShowDefinition, "&Definition ", "&Definition : "};
constexpr NamedEntry kCallers = {CommandId::kFindRoutineCallers, "Aufrufe", "Aufrufe: "};

void SetName(const CommandSet& commands, const NamedEntry& entry, QString name) {
  QAction& item = commands.PopupItem(PopupId::kCode, entry.command);
  item.setEnabled(!name.isEmpty());
  const QString plain = QString::fromLatin1(entry.plain);
  item.setText(name.isEmpty()
                   ? plain
                   : QString::fromLatin1(entry.before) + name.replace(QLatin1Char('&'), QStringLiteral("&&")));
}

}  // namespace

void ShowCodeMenu(Shell& shell, const QPoint& position) {
  const navigation::CodeView& view = shell.views.View(shell.views.Current());
  QMenu& menu = shell.commands->PreparePopup(PopupId::kCode);
  SetName(*shell.commands, kDefinition, FromCode(navigation::IdentifierAtCaret(view.Text(), view.Caret())));
  SetName(*shell.commands, kCallers, shell.staBar->Text(StatusPanels::kRoutine));
  menu.popup(position);
}

void WireZoomMenu(Shell& shell) {
  QObject::connect(shell.rtbZoom, &QWidget::customContextMenuRequested, shell.rtbZoom,
                   [&shell](const QPoint& position) {
                     shell.commands->ShowPopup(PopupId::kZoom, shell.rtbZoom->viewport()->mapToGlobal(position));
                   });
}

}  // namespace quillmate::ui
