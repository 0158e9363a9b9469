#include "accessible_names.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QToolBar>
#include <array>

namespace quillmate::ui {
namespace {

struct Row {
  const char* control;
  const char* name;
};

constexpr std::array kNames = {
    Row{"treApp", "Quellen"},
    Row{"treProjekt", "Projektbaum"},
    Row{"txtFilter", "Modul oder Routine finden"},
    Row{"treRoutSuche", "Aufrufe der Routine"},
    Row{"rtbHaupt", "Code des Moduls"},
    Row{"rtbZoom", "Code der Routine"},
    Row{"txtSuche", "Suchtext"},
    Row{"txtTreffer", "Suchtext für alle Treffer"},
    Row{"lstTreffer", "Alle Treffer"},
    Row{"Back", "Eine Routine zurück"},
    Row{"Next", "Eine Routine weiter"},
    Row{"lblProjekte", "Zuletzt geöffnete Projekte"},
    Row{"fraTeiler", "Teiler zwischen Baum und Code"},
};

}  // namespace

void NameForScreenReaders(QWidget& window) {
  for (QToolBar* bar : window.findChildren<QToolBar*>()) {
    auto* more = bar->findChild<QAbstractButton*>(QStringLiteral("qt_toolbar_ext_button"));
    if (more != nullptr) more->setAccessibleName(QStringLiteral("Weitere Befehle"));
  }
  for (const Row& row : kNames) {
    auto* control = window.findChild<QWidget*>(QString::fromLatin1(row.control));
    if (control != nullptr) control->setAccessibleName(QString::fromUtf8(row.name));
  }
  for (QDockWidget* panel : window.findChildren<QDockWidget*>()) {
    auto* close = panel->findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton"));
    if (close == nullptr) continue;
    const QString text = QStringLiteral("%1 schließen").arg(panel->windowTitle());
    close->setAccessibleName(text);
    close->setAccessibleDescription({});
    close->setToolTip(text);
  }
}

}  // namespace quillmate::ui
