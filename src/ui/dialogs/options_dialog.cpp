#include "options_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <filesystem>
#include <optional>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/settings/sources.h>
#include <quillmate/text/operations.h>

#include "button_row.h"
#include "code_style.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

using settings::Options;

enum Page { kDisplay, kFiles, kCode, kFormats };

struct Switch {
  Page page;
  const char* name;
  const char* caption;
  const char* tooltip;
  /// Null for the switch that is only shown.
  bool Options::*option;
};

constexpr Switch kSwitches[] = {
    {kDisplay, "chkUserBild", "Beim Start Benutzer Bildschirm Anwenden", "", &Options::usb},
    {kDisplay, "chkVorschau", "Vorschau Html ", "", &Options::vor},
    {kDisplay, "chkModulnamen", "Modulnamen bei Projektexport", "", nullptr},
    {kDisplay, "chkMeldung", "Meldung nach Clip", "Meldung nach Transport in die Zwischenablage ausgeben",
     &Options::meld},
    {kDisplay, "chkAufgeklappt", "Modulliste aufgeklappt", "Zeigt alle Einträge im linken Fenster", &Options::aufk},
    {kFiles, "chkStandardImmer", "Immer benutzen", "", &Options::stapro},
    {kCode, "chkRoutLeer", "Leerzeile vor Routinen einfügen", "", &Options::rle},
    {kCode, "chkRouEinruecken", "Zwischen Routinen Einrücken", "", &Options::rer},
    {kCode, "chkEinrueck", "Einrücken", "", &Options::einr},
    {kCode, "chkLeer", "Leerzeilen entfernen", "", &Options::leer},
    {kFormats, "chkRoutinen", "Routinen Fett", "", &Options::rouf},
};

constexpr int kFontSizes[] = {6, 7, 8, 9, 10, 11, 12, 13, 14, 16, 18, 20, 22, 24, 28, 32, 36, 48, 72};
constexpr int kLargestTabStop = 20;

/// By their Windows numbers.
struct CodePage {
  int number;
  const char* name;
};

constexpr CodePage kCodePages[] = {
    {0, "Westeuropäisch (Windows-1252)"},
    {1250, "Mitteleuropäisch (Windows-1250)"},
    {1251, "Kyrillisch (Windows-1251)"},
    {20866, "Kyrillisch (KOI8-R)"},
    {1253, "Griechisch (Windows-1253)"},
    {1254, "Türkisch (Windows-1254)"},
    {1255, "Hebräisch (Windows-1255)"},
    {1256, "Arabisch (Windows-1256)"},
    {1257, "Baltisch (Windows-1257)"},
    {874, "Thailändisch (Windows-874)"},
    {932, "Japanisch (Shift-JIS)"},
    {936, "Chinesisch, vereinfacht (GBK)"},
    {949, "Koreanisch (949)"},
    {950, "Chinesisch, traditionell (Big5)"},
    {850, "Westeuropäisch (DOS)"},
    {437, "Westeuropäisch (DOS, 437)"},
};

QComboBox* MakeList(const char* name) {
  auto* list = new QComboBox;
  list->setObjectName(QString::fromLatin1(name));
  return list;
}

/// Selects an entry; a value that the list lacks is added in front.
void Select(QComboBox& list, const QString& entry) {
  if (list.findText(entry) < 0) list.insertItem(0, entry);
  list.setCurrentText(entry);
}

QHBoxLayout* Row(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  for (QWidget* widget : widgets) row->addWidget(widget);
  row->addStretch();
  return row;
}

}  // namespace

OptionsDialog::OptionsDialog(QWidget* parent, Interaction& interaction, startup::AppGlobals& globals,
                             settings::SettingsStore& store)
    : QDialog(parent), interaction_(interaction), globals_(globals), store_(store) {
  setObjectName(QStringLiteral("frmOptionen"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Optionen"));
  const struct {
    const char* caption;
    QWidget* frame;
  } kTabs[] = {{"&Anzeige", MakeDisplayPage()},
               {"&Dateien", MakeFilesPage()},
               {"&Code", MakeCodePage()},
               {"&Formate", MakeFormatsPage()}};
  auto* tabs = new QTabWidget;
  tabs->setObjectName(QStringLiteral("tbOptionen"));
  tabs->setAccessibleName(QStringLiteral("Seiten der Optionen"));
  tabs->tabBar()->setAccessibleName(tabs->accessibleName());
  for (const auto& tab : kTabs) {
    tab.frame->setObjectName(QStringLiteral("fraOptionen%1").arg(tabs->count()));
    tabs->addTab(tab.frame, QString::fromUtf8(tab.caption));
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdEscape"));
  buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Abbrechen"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { interaction_.Guarded([this] { Store(); }); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs);
  layout->addWidget(buttons);
  Load();
}

QWidget* OptionsDialog::MakeFlagPage(int page) {
  auto* frame = new QWidget;
  auto* layout = new QVBoxLayout(frame);
  for (const Switch& row : kSwitches) {
    if (row.page != page) continue;
    auto* box = new QCheckBox(QString::fromUtf8(row.caption));
    box->setObjectName(QString::fromLatin1(row.name));
    box->setToolTip(QString::fromUtf8(row.tooltip));
    layout->addWidget(box);
    if (row.option != nullptr) flags_.push_back({box, row.option});
  }
  layout->addStretch();
  return frame;
}

QWidget* OptionsDialog::MakeDisplayPage() {
  QWidget* page = MakeFlagPage(kDisplay);
  page->findChild<QCheckBox*>(QStringLiteral("chkModulnamen"))->setChecked(kModuleHeaders);
  return page;
}

QWidget* OptionsDialog::MakeFilesPage() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(MakeDatabaseFrame());
  layout->addWidget(MakeFolderFrame());
  layout->addStretch();
  return page;
}

QWidget* OptionsDialog::MakeDatabaseFrame() {
  auto* frame = new QGroupBox(QStringLiteral("Infodatenbank"));
  frame->setObjectName(QStringLiteral("fraInfoDatenbank"));
  auto* info = new QLineEdit(FromPath(codedb::CodeDbPath(globals_.TempFolder)));
  info->setObjectName(QStringLiteral("txtInfo"));
  info->setReadOnly(true);
  info->setMinimumWidth(360);
  info->setToolTip(info->text());
  info->setCursorPosition(0);
  auto* change = MakeButton("cmdVBÄndern", "Ändern ...");
  change->setEnabled(false);
  change->setToolTip(
      QStringLiteral("Die Datenbank liegt im Ordner des Projekts: Datei - Speichern Unter legt sie woanders an."));
  auto* layout = new QHBoxLayout(frame);
  layout->addWidget(info, 1);
  layout->addWidget(change);
  return frame;
}

QWidget* OptionsDialog::MakeFolderFrame() {
  auto* frame = new QGroupBox(QStringLiteral("Standard Verzeichnis"));
  frame->setObjectName(QStringLiteral("fraStandartProjektVerzeichnis"));
  txtSpeichern_ = new QLineEdit;
  txtSpeichern_->setObjectName(QStringLiteral("txtSpeichern"));
  QPushButton* change = MakeButton("cmdSpeichernÄndern", "Ändern ...");
  QPushButton* create = MakeButton("cmdNeu", "Neu...");
  create->setToolTip(QStringLiteral("Neuen Ordner anlegen"));
  connect(change, &QPushButton::clicked, this, [this] { interaction_.Guarded([this] { ChooseFolder(); }); });
  connect(create, &QPushButton::clicked, this, [this] { interaction_.Guarded([this] { MakeFolder(); }); });
  auto* row = new QHBoxLayout;
  row->addWidget(txtSpeichern_, 1);
  row->addWidget(change);
  row->addWidget(create);
  auto* layout = new QVBoxLayout(frame);
  layout->addLayout(row);
  QWidget* flags = MakeFlagPage(kFiles);
  flags->layout()->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(flags);
  return frame;
}

QWidget* OptionsDialog::MakeCodePage() {
  QWidget* page = MakeFlagPage(kCode);
  auto* indent = page->findChild<QCheckBox*>(QStringLiteral("chkEinrueck"));
  auto* bodies = page->findChild<QCheckBox*>(QStringLiteral("chkRouEinruecken"));
  // Bodies are indented only where everything is; the mark stays as the user set it.
  bodies->setToolTip(QStringLiteral("Wirkt nur zusammen mit Einrücken"));
  bodies->setEnabled(false);
  connect(indent, &QCheckBox::toggled, bodies, &QWidget::setEnabled);
  static_cast<QVBoxLayout*>(page->layout())->addWidget(MakeReadingRow());
  return page;
}

/// How the user's own files are read, not what becomes of their code.
QWidget* OptionsDialog::MakeReadingRow() {
  auto* frame = new QGroupBox(QStringLiteral("Dateien einlesen"));
  chkExcel4_ = new QCheckBox(QStringLiteral("Excel-&4-Makros lesen"));
  chkExcel4_->setObjectName(QStringLiteral("chkExcel4"));
  chkExcel4_->setToolTip(QStringLiteral("Formeln von Makroblättern werden Module, wo die Datei sie als Text hat"));
  cboZeichensatz_ = MakeList("cboZeichensatz");
  for (const CodePage& page : kCodePages) cboZeichensatz_->addItem(QString::fromUtf8(page.name), page.number);
  cboZeichensatz_->setToolTip(QStringLiteral("Gilt für Moduldateien, die ihren Zeichensatz nicht selbst nennen"));
  auto* label = new QLabel(QStringLiteral("&Zeichensatz der Moduldateien"));
  label->setBuddy(cboZeichensatz_);
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(chkExcel4_);
  layout->addLayout(Row({label, cboZeichensatz_}));
  return frame;
}

QWidget* OptionsDialog::MakeFormatsPage() {
  fraKeyfarbe_ = new ColourFrame(QStringLiteral("fraKeyfarbe"), QStringLiteral("Schlüsselwortfarbe"), 0);
  fraKomFarbe_ = new ColourFrame(QStringLiteral("fraKomFarbe"), QStringLiteral("Kommentarfarbe"), 16);
  fraStringFarbe_ = new ColourFrame(QStringLiteral("fraStringFarbe"), QStringLiteral("Stringfarbe"), 32);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  auto* colours = new QHBoxLayout;
  for (ColourFrame* frame : {fraKeyfarbe_, fraKomFarbe_, fraStringFarbe_}) colours->addWidget(frame);
  layout->addLayout(colours);
  QWidget* flags = MakeFlagPage(kFormats);
  flags->layout()->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(flags);
  layout->addWidget(MakeFontRow());
  layout->addStretch();
  return page;
}

QWidget* OptionsDialog::MakeFontRow() {
  cboSchriftArt_ = MakeList("cboSchriftArt");
  cboSchriftArt_->addItems(QFontDatabase::families());
  cboSchriftGr_ = MakeList("cboSchriftGr");
  for (const int size : kFontSizes) cboSchriftGr_->addItem(QString::number(size));
  cboTabStop_ = MakeList("cboTabStop");
  for (int width = 1; width <= kLargestTabStop; ++width) cboTabStop_->addItem(QString::number(width));
  lblSchrift_ = new QLabel(QStringLiteral("Standardschrift Normal"));
  lblSchrift_->setObjectName(QStringLiteral("lblSchrift"));
  // A large font must not blow up the dialog.
  lblSchrift_->setFixedHeight(lblSchrift_->fontMetrics().height() * 2);
  lblSchrift_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  connect(cboSchriftArt_, &QComboBox::currentTextChanged, this, [this] { ShowSampleFont(); });
  connect(cboSchriftGr_, &QComboBox::currentTextChanged, this, [this] { ShowSampleFont(); });
  auto* tabStops = new QLabel(QStringLiteral("Tabstops in mm"));
  tabStops->setBuddy(cboTabStop_);
  auto* frame = new QWidget;
  auto* layout = new QVBoxLayout(frame);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lblSchrift_);
  layout->addLayout(Row({cboSchriftArt_, cboSchriftGr_}));
  layout->addLayout(Row({tabStops, cboTabStop_}));
  return frame;
}

void OptionsDialog::Load() {
  const Options& options = globals_.Options;
  for (const Flag& flag : flags_) flag.box->setChecked(options.*flag.option);
  txtSpeichern_->setText(FromUtf8(globals_.LastProjectFolder));
  fraKeyfarbe_->SetColour(options.fkey);
  fraKomFarbe_->SetColour(options.fkom);
  fraStringFarbe_->SetColour(options.fstr);
  Select(*cboSchriftArt_, FromUtf8(options.fontName));
  Select(*cboSchriftGr_, QString::number(options.fontSize));
  Select(*cboTabStop_, QString::number(options.tab));
  const settings::ReadingOptions reading = settings::LoadReadingOptions(store_);
  chkExcel4_->setChecked(reading.excel4);
  // A number that the settings got elsewhere.
  if (cboZeichensatz_->findData(reading.codePage) < 0) {
    cboZeichensatz_->addItem(QString::number(reading.codePage), reading.codePage);
  }
  cboZeichensatz_->setCurrentIndex(cboZeichensatz_->findData(reading.codePage));
  ShowSampleFont();
}

void OptionsDialog::ShowSampleFont() {
  QFont font(cboSchriftArt_->currentText());
  const int size = cboSchriftGr_->currentText().toInt();
  if (size > 0) font.setPointSize(size);
  lblSchrift_->setFont(font);
}

void OptionsDialog::ChooseFolder() {
  const QString folder = interaction_.Desktop().ChooseFolder(
      QStringLiteral("Bitte Standardordner für Projekte auswählen"), txtSpeichern_->text());
  if (!folder.isEmpty()) txtSpeichern_->setText(folder);
}

void OptionsDialog::MakeFolder() {
  const QString parent = interaction_.Desktop().ChooseFolder(
      QStringLiteral("Bitte Verzeichnis auswählen,\r\nin welchem der neue Ordner erzeugt werden soll"),
      txtSpeichern_->text());
  if (parent.isEmpty()) return;
  const std::optional<QString> typed = interaction_.Desktop().AskText(
      FromUtf8(globals_.AppTitle), QStringLiteral("Namen für neuen Ordner angeben"), QStringLiteral("Neuer Ordner"));
  const std::string name = files::CleanName(text::Trim(ToUtf8(typed.value_or(QString()))));
  if (name.empty()) return;
  const std::filesystem::path folder = ToPath(parent) / files::PathFromText(name);
  std::filesystem::create_directory(folder);
  txtSpeichern_->setText(FromPath(folder));
}

void OptionsDialog::Store() {
  globals_.LastProjectFolder = ToUtf8(txtSpeichern_->text());
  store_.WriteSetting(settings::kProjectSection, "proj_pf", globals_.LastProjectFolder);
  Options& options = globals_.Options;
  options.fkey = fraKeyfarbe_->Colour();
  options.fkom = fraKomFarbe_->Colour();
  options.fstr = fraStringFarbe_->Colour();
  options.fontName = ToUtf8(cboSchriftArt_->currentText());
  options.fontSize = cboSchriftGr_->currentText().toShort();
  options.tab = cboTabStop_->currentText().toShort();
  for (const Flag& flag : flags_) options.*flag.option = flag.box->isChecked();
  settings::SaveOptions(store_, options);
  settings::SaveReadingOptions(store_, {chkExcel4_->isChecked(), cboZeichensatz_->currentData().toInt()});
  accept();
}

}  // namespace quillmate::ui
