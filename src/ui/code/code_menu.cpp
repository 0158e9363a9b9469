#include "code_menu.h"

#include <quillmate/navigation/identifier.h>

#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

/// An entry that needs a name: with it in the caption, or off.
struct NamedEntry {
  const char* id;
  const char* plain;
  const char* before;
};

constexpr NamedEntry kDefinition = {"mnuPopUpHaupt_Definition", "&Definition ", "&Definition : "};
constexpr NamedEntry kCallers = {"mnuPopUpHaupt_Aufruf", "Aufrufe", "Aufrufe: "};

void SetName(const QMenu& menu, const NamedEntry& entry, QString name) {
  auto* item = menu.findChild<QAction*>(QString::fromLatin1(entry.id));
  item->setEnabled(!name.isEmpty());
  const QString plain = QString::fromLatin1(entry.plain);
  item->setText(name.isEmpty()
                    ? plain
                    : QString::fromLatin1(entry.before) + name.replace(QLatin1Char('&'), QStringLiteral("&&")));
}

}  // namespace

void ShowCodeMenu(Shell& shell, const QPoint& position) {
  const navigation::CodeView& view = shell.views.View(shell.views.Current());
  QMenu& menu = shell.commands->PreparePopup("mnuPopUpHaupt");
  SetName(menu, kDefinition, FromCode(navigation::IdentifierAtCaret(view.Text(), view.Caret())));
  SetName(menu, kCallers, shell.staBar->Text(StatusPanels::kRoutine));
  menu.popup(position);
}

void WireZoomMenu(Shell& shell) {
  QObject::connect(shell.rtbZoom, &QWidget::customContextMenuRequested, shell.rtbZoom,
                   [&shell](const QPoint& position) {
                     shell.commands->Popup("mnuPopUp_Zoom", shell.rtbZoom->viewport()->mapToGlobal(position));
                   });
}

}  // namespace quillmate::ui
