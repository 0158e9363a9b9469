#include "inventory_choice.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "button_row.h"
#include "qt_text.h"

namespace quillmate::ui {
InventoryChoice::InventoryChoice(QWidget* parent, Platform& platform, const QString& database,
                                 const QString& startFolder)
    : QDialog(parent),
      platform_(platform),
      startFolder_(startFolder),
      folders_(new QListWidget),
      exclude_(new QLineEdit),
      database_(new QLineEdit),
      ok_(new QPushButton(QStringLiteral("&Durchsuchen"))) {
  setObjectName(QStringLiteral("frmBestandWahl"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Ordner durchsuchen"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(MakeFolders());
  auto* excluded = new QLabel(QStringLiteral("&Auslassen (Muster, durch Strichpunkt getrennt):"));
  exclude_->setObjectName(QStringLiteral("txtAuslassen"));
  exclude_->setPlaceholderText(QStringLiteral("~$*; Archiv"));
  excluded->setBuddy(exclude_);
  layout->addWidget(excluded);
  layout->addWidget(exclude_);
  layout->addWidget(MakeDatabase(database));
  auto* buttons = new QDialogButtonBox;
  ok_->setObjectName(QStringLiteral("cmdDurchsuchen"));
  buttons->addButton(ok_, QDialogButtonBox::AcceptRole);
  buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdAbbrechen"));
  layout->addWidget(buttons);
  ok_->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  resize(fontMetrics().averageCharWidth() * 80, sizeHint().height());
  Judge();
}

QWidget* InventoryChoice::MakeFolders() {
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* label = new QLabel(QStringLiteral("&Ordner, die mit allen Unterordnern durchsucht werden:"));
  folders_->setObjectName(QStringLiteral("lstOrdner"));
  folders_->setAccessibleName(QStringLiteral("Ordner"));
  folders_->setMinimumHeight(4 * fontMetrics().height());
  label->setBuddy(folders_);
  auto* row = new QHBoxLayout;
  QPushButton* add = MakeButton("cmdOrdnerDazu", "&Hinzufügen ...");
  QPushButton* remove = MakeButton("cmdOrdnerWeg", "&Entfernen");
  row->addWidget(add);
  row->addWidget(remove);
  row->addStretch();
  layout->addWidget(label);
  layout->addWidget(folders_, 1);
  layout->addLayout(row);
  connect(add, &QPushButton::clicked, this,
          [this] { AddFolder(platform_.ChooseFolder(QStringLiteral("Ordner durchsuchen"), startFolder_)); });
  connect(remove, &QPushButton::clicked, this, [this] {
    delete folders_->currentItem();
    Judge();
  });
  return box;
}

QWidget* InventoryChoice::MakeDatabase(const QString& database) {
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* label = new QLabel(QStringLiteral("&Bestand, der angelegt oder auf den neuesten Stand gebracht wird:"));
  database_->setObjectName(QStringLiteral("txtBestand"));
  database_->setText(database);
  label->setBuddy(database_);
  auto* row = new QHBoxLayout;
  QPushButton* browse = MakeButton("cmdBestandDatei", "Da&tei ...");
  row->addWidget(database_, 1);
  row->addWidget(browse);
  layout->addWidget(label);
  layout->addLayout(row);
  connect(database_, &QLineEdit::textChanged, this, &InventoryChoice::Judge);
  connect(browse, &QPushButton::clicked, this, [this] {
    const QString file =
        platform_.ChooseSaveFile({QStringLiteral("Bestand"), startFolder_, QStringLiteral("bestand.sqlite"),
                                  QStringLiteral("Bestand (*.sqlite);;Alle Dateien (*)"), QStringLiteral("sqlite")});
    if (!file.isEmpty()) database_->setText(file);
  });
  return box;
}

void InventoryChoice::AddFolder(const QString& folder) {
  if (folder.isEmpty() || !folders_->findItems(folder, Qt::MatchExactly).isEmpty()) return;
  folders_->addItem(folder);
  folders_->setCurrentRow(folders_->count() - 1);
  Judge();
}

void InventoryChoice::Judge() { ok_->setEnabled(folders_->count() > 0 && !database_->text().trimmed().isEmpty()); }

InventoryOrder InventoryChoice::Order() const {
  InventoryOrder order{.database = ToPath(database_->text().trimmed()), .roots = {}, .exclude = {}};
  for (int row = 0; row < folders_->count(); ++row) order.roots.push_back(ToPath(folders_->item(row)->text()));
  for (const QString& pattern : exclude_->text().split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    if (!pattern.trimmed().isEmpty()) order.exclude.push_back(ToUtf8(pattern.trimmed()));
  }
  return order;
}

}  // namespace quillmate::ui
