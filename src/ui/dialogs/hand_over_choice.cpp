#include "hand_over_choice.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace quillmate::ui {

HandOverDialog::HandOverDialog(QWidget* parent, const HandOverChoice& preset)
    : QDialog(parent),
      asFolder_(new QRadioButton(QStringLiteral("Als &Ordner"))),
      asZip_(new QRadioButton(QStringLiteral("Als &Zip-Datei"))) {
  setObjectName(QStringLiteral("frmUebergabe"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Übergabe"));
  auto* what = new QGroupBox(QStringLiteral("Inhalt"));
  auto* rows = new QVBoxLayout(what);
  auto* cover = new QLabel(QStringLiteral("Übersicht mit Quellen, Umfang, Befunden und Notizen"));
  cover->setWordWrap(true);
  rows->addWidget(cover);
  const auto add = [this, rows](const char* name, const char* caption, bool on) {
    auto* box = new QCheckBox(QString::fromUtf8(caption));
    box->setObjectName(QString::fromLatin1(name));
    box->setChecked(on);
    rows->addWidget(box);
    parts_.push_back(box);
  };
  add("chkUebergabeSeiten", "&HTML-Dokumentation", preset.site);
  add("chkUebergabePdf", "&Code als PDF", preset.pdf);
  add("chkUebergabeListen", "&Listen als Excel-Arbeitsmappe", preset.lists);
  add("chkUebergabeProjekt", "Gespeichertes &Projekt", preset.project);
  asFolder_->setObjectName(QStringLiteral("optUebergabeOrdner"));
  asZip_->setObjectName(QStringLiteral("optUebergabeZip"));
  (preset.zipped ? asZip_ : asFolder_)->setChecked(true);
  auto* form = new QGroupBox(QStringLiteral("Form"));
  auto* forms = new QVBoxLayout(form);
  forms->addWidget(asFolder_);
  forms->addWidget(asZip_);
  auto* buttons = new QDialogButtonBox;
  QPushButton* go = buttons->addButton(QStringLiteral("&Weiter ..."), QDialogButtonBox::AcceptRole);
  buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdAbbrechen"));
  go->setObjectName(QStringLiteral("cmdUebergabe"));
  auto* layout = new QVBoxLayout(this);
  // On a small screen a dialog is opened lower than its wrapped text needs.
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(what);
  layout->addWidget(form);
  layout->addWidget(buttons);
  // Of this dialog: before, the button is in none.
  go->setDefault(true);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    const HandOverChoice choice{parts_[0]->isChecked(), parts_[1]->isChecked(), parts_[2]->isChecked(),
                                parts_[3]->isChecked(), asZip_->isChecked()};
    accept();
    emit Chosen(choice);
  });
}

}  // namespace quillmate::ui
