#include "place_bar.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quillmate::ui {
namespace {

constexpr int kLongest = 60;

QToolButton* AddPart(QHBoxLayout& row, const char* name, const QString& tip) {
  if (row.count() > 0) row.addWidget(new QLabel(QStringLiteral("\u203a")));
  auto* button = new QToolButton;
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoRaise(true);
  button->setToolTip(tip);
  button->setFocusPolicy(Qt::TabFocus);
  row.addWidget(button);
  return button;
}

/// Names may be of any length; what is cut off is in the hint.
void SetPart(QToolButton& button, const char* what, const QString& name) {
  QString shown = name.size() > kLongest ? name.left(kLongest) + QStringLiteral("\u2026") : name;
  button.setText(shown.replace(QLatin1Char('&'), QStringLiteral("&&")));
  button.setAccessibleName(QString::fromLatin1(what) + QLatin1Char(' ') + name);
}

}  // namespace

PlaceBar::PlaceBar() {
  setObjectName(QStringLiteral("fraOrt"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2, 0, 2, 0);
  row->setSpacing(0);
  project_ = AddPart(*row, "cmdOrtProjekt", QStringLiteral("Zeigt das Modul im Projektbaum"));
  module_ = AddPart(*row, "cmdOrtModul", QStringLiteral("Zum Anfang des Moduls"));
  routine_ = AddPart(*row, "cmdOrtRoutine", QStringLiteral("Zum Kopf der Routine"));
  row->addStretch();
  // Long names must not make the window wider.
  setMinimumWidth(1);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  connect(project_, &QToolButton::clicked, this, &PlaceBar::ProjectClicked);
  connect(module_, &QToolButton::clicked, this, &PlaceBar::ModuleClicked);
  connect(routine_, &QToolButton::clicked, this, &PlaceBar::RoutineClicked);
}

void PlaceBar::Show(const QString& project, const QString& module, const QString& routine) {
  SetPart(*project_, "Projekt", project);
  SetPart(*module_, "Modul", module);
  SetPart(*routine_, "Routine", routine.isEmpty() ? QStringLiteral("(Deklarationen)") : routine);
  routine_->setEnabled(!routine.isEmpty());
}

}  // namespace quillmate::ui
