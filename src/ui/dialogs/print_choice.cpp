#include "print_choice.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quillmate::ui {

PrintChoiceDialog::PrintChoiceDialog(QWidget* parent, const QString& title, const QString& action,
                                     const PrintChoice& preset, bool hasSelection, bool hasRoutine)
    : QDialog(parent),
      what_(new QButtonGroup(this)),
      lineNumbers_(new QCheckBox(QStringLiteral("&Zeilennummern"))),
      colours_(new QCheckBox(QStringLiteral("&Farben"))) {
  setObjectName(QStringLiteral("frmDrucken"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(title);
  auto* group = new QGroupBox(QStringLiteral("Umfang"));
  auto* choices = new QVBoxLayout(group);
  const auto add = [&](PrintedWhat what, const char* name, const char* caption, bool isThere) {
    auto* choice = new QRadioButton(QString::fromUtf8(caption));
    choice->setObjectName(QString::fromLatin1(name));
    choice->setEnabled(isThere);
    choices->addWidget(choice);
    what_->addButton(choice, static_cast<int>(what));
    if (isThere && (what == preset.what || what_->checkedButton() == nullptr)) choice->setChecked(true);
  };
  add(PrintedWhat::kModule, "optModul", "&Modul", true);
  add(PrintedWhat::kRoutine, "optRoutine", "&Routine", hasRoutine);
  add(PrintedWhat::kSelection, "optAuswahl", "&Auswahl (ganze Zeilen)", hasSelection);
  add(PrintedWhat::kProject, "optProjekt", "&Projekt mit Inhaltsverzeichnis", true);
  lineNumbers_->setObjectName(QStringLiteral("chkDruckNummern"));
  lineNumbers_->setChecked(preset.lineNumbers);
  colours_->setObjectName(QStringLiteral("chkDruckFarben"));
  colours_->setChecked(preset.colours);
  auto* buttons = new QDialogButtonBox;
  QPushButton* go = buttons->addButton(action, QDialogButtonBox::AcceptRole);
  buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdAbbrechen"));
  go->setObjectName(QStringLiteral("cmdDrucken"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(group);
  layout->addWidget(lineNumbers_);
  layout->addWidget(colours_);
  layout->addWidget(buttons);
  // Of this dialog: before, the button is in none.
  go->setDefault(true);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    const PrintChoice choice{static_cast<PrintedWhat>(what_->checkedId()), lineNumbers_->isChecked(),
                             colours_->isChecked()};
    accept();
    emit Chosen(choice);
  });
}

}  // namespace quillmate::ui
