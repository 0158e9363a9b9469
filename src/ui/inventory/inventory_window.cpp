#include "inventory_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/inventory/report.h>

#include "button_row.h"
#include "inventory_choice.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

constexpr QSize kStartSize(1240, 760);
constexpr int kTellEvery = 200;
/// Somebody who types does not want an answer for each letter.
constexpr int kTypingPause = 250;
/// Rows of one table among the details.
constexpr std::size_t kMostDetails = 1000;
/// In characters; longer texts are told by their tips.
constexpr int kWidestDetail = 48;

QTreeWidgetItem* MakeRow(const std::vector<std::string>& cells) {
  QStringList texts;
  for (const std::string& cell : cells) texts.append(FromUtf8(cell).simplified());
  auto* item = new QTreeWidgetItem(texts);
  for (int column = 0; column < texts.size(); ++column) item->setToolTip(column, texts[column]);
  return item;
}

}  // namespace

InventoryWindow::InventoryWindow(QWidget* parent, const ListDesk& desk, std::filesystem::path programFolder)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      programFolder_(std::move(programFolder)),
      overview_(new QLabel),
      question_(new QComboBox),
      search_(new QLineEdit),
      count_(new QLabel),
      model_(new InventoryModel(this)),
      files_(new QTreeView),
      details_(new QTreeWidget),
      status_(new QLabel),
      bar_(new QProgressBar),
      progress_(MakeProgress()),
      open_(MakeButton("cmdBestandOeffnen", "&Öffnen ...")),
      scan_(MakeButton("cmdOrdnerDurchsuchen", "Ordner &durchsuchen ...")),
      report_(MakeButton("cmdBestandBericht", "&Bericht ...")),
      workbook_(MakeButton("cmdBestandMappe", "&Arbeitsmappe ...")) {
  setObjectName(QStringLiteral("frmBestand"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowTitle(QStringLiteral("Bestand"));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  overview_->setObjectName(QStringLiteral("lblBestand"));
  overview_->setTextFormat(Qt::PlainText);
  overview_->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(overview_);
  layout->addWidget(MakeFilters());
  layout->addWidget(MakeLists(), 1);
  layout->addWidget(progress_);
  layout->addWidget(MakeButtons());
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, [this] {
    int percent = -1;
    status_->setText(job_->StatusText(percent));
    bar_->setRange(0, percent < 0 ? 0 : 100);
    if (percent >= 0) bar_->setValue(percent);
  });
  typed_.setSingleShot(true);
  typed_.setInterval(kTypingPause);
  connect(&typed_, &QTimer::timeout, this, &InventoryWindow::ApplyFilter);
  ShowState();
}

InventoryWindow::~InventoryWindow() = default;

QWidget* InventoryWindow::MakeFilters() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  question_->setObjectName(QStringLiteral("cmbFrage"));
  question_->setAccessibleName(QStringLiteral("Welche Dateien"));
  for (std::size_t question = 0; question < inventory::kQuestionCount; ++question) {
    question_->addItem(FromUtf8(inventory::TitleOf(static_cast<inventory::Question>(question))));
  }
  search_->setObjectName(QStringLiteral("txtBestandSuche"));
  search_->setAccessibleName(QStringLiteral("Suche im Bestand"));
  search_->setPlaceholderText(QStringLiteral("Pfad, Projekt oder Autor"));
  search_->setClearButtonEnabled(true);
  count_->setObjectName(QStringLiteral("lblAnzahl"));
  layout->addWidget(question_);
  layout->addWidget(search_, 1);
  layout->addWidget(count_);
  connect(question_, &QComboBox::currentIndexChanged, this, &InventoryWindow::ApplyFilter);
  connect(search_, &QLineEdit::textChanged, &typed_, qOverload<>(&QTimer::start));
  connect(search_, &QLineEdit::returnPressed, this, [this] {
    ApplyFilter();
    files_->setFocus();
  });
  return row;
}

QWidget* InventoryWindow::MakeLists() {
  files_->setObjectName(QStringLiteral("lstBestand"));
  files_->setAccessibleName(QStringLiteral("Dateien des Bestands"));
  files_->setRootIsDecorated(false);
  files_->setUniformRowHeights(true);
  files_->setAllColumnsShowFocus(true);
  files_->setTextElideMode(Qt::ElideMiddle);
  files_->setModel(model_);
  const int character = fontMetrics().averageCharWidth();
  files_->header()->resizeSection(0, 52 * character);
  for (int column = 1; column < model_->columnCount(); ++column) {
    files_->header()->resizeSection(column, (column == 6 ? 20 : 13) * character);
  }
  details_->setObjectName(QStringLiteral("treEinzelheiten"));
  details_->setAccessibleName(QStringLiteral("Einzelheiten der Datei"));
  details_->setHeaderHidden(true);
  details_->setUniformRowHeights(true);
  auto* lists = new QSplitter(Qt::Horizontal);
  lists->addWidget(files_);
  lists->addWidget(details_);
  lists->setStretchFactor(0, 3);
  lists->setStretchFactor(1, 2);
  lists->setChildrenCollapsible(false);
  connect(details_, &QTreeWidget::itemExpanded, this, &InventoryWindow::FitDetails);
  connect(files_->selectionModel(), &QItemSelectionModel::currentChanged, this, &InventoryWindow::ShowDetails);
  connect(files_, &QTreeView::activated, this, &InventoryWindow::ChooseFile);
  return lists;
}

QWidget* InventoryWindow::MakeProgress() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  status_->setObjectName(QStringLiteral("lblDurchsuchen"));
  bar_->setObjectName(QStringLiteral("barDurchsuchen"));
  bar_->setAccessibleName(QStringLiteral("Fortschritt"));
  bar_->setTextVisible(false);
  QPushButton* cancel = MakeButton("cmdDurchsuchenEnde", "Abb&rechen");
  layout->addWidget(status_);
  layout->addWidget(bar_, 1);
  layout->addWidget(cancel);
  connect(cancel, &QPushButton::clicked, this, [this] {
    if (job_ != nullptr) job_->Cancel();
  });
  return row;
}

QWidget* InventoryWindow::MakeButtons() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  QPushButton* close = MakeButton("cmdSchliessen", "S&chließen");
  for (QPushButton* button : {open_, scan_}) layout->addWidget(button);
  layout->addStretch();
  for (QPushButton* button : {report_, workbook_, close}) layout->addWidget(button);
  const auto guarded = [this](QPushButton* button, void (InventoryWindow::*run)()) {
    connect(button, &QPushButton::clicked, this,
            [this, run] { desk_.interaction.Guarded([this, run] { (this->*run)(); }); });
  };
  guarded(open_, &InventoryWindow::ChooseDatabase);
  guarded(scan_, &InventoryWindow::ChooseFolders);
  guarded(report_, &InventoryWindow::WriteReport);
  guarded(workbook_, &InventoryWindow::WriteWorkbook);
  connect(close, &QPushButton::clicked, this, [this] { this->close(); });
  return row;
}

void InventoryWindow::ShowState(bool introduce) {
  const bool isOpen = model_->Stock() != nullptr;
  progress_->setVisible(IsScanning());
  for (QPushButton* button : {open_, scan_}) button->setEnabled(!IsScanning());
  for (QPushButton* button : {report_, workbook_}) button->setEnabled(isOpen);
  for (QWidget* each : {static_cast<QWidget*>(question_), static_cast<QWidget*>(search_)}) each->setEnabled(isOpen);
  if (introduce && !isOpen && !IsScanning()) {
    overview_->setText(QStringLiteral(
        "Ein Bestand sagt von ganzen Laufwerken, welche Dateien Makros enthalten, welche davon Kopien sind, was unter "
        "64 Bit nicht läuft und was niemand lesen konnte. Öffnen Sie einen, oder durchsuchen Sie Ordner."));
  }
}

void InventoryWindow::ChooseDatabase() {
  const QStringList files = desk_.interaction.Desktop().ChooseFiles(
      QStringLiteral("Bestand öffnen"), FromUtf8(desk_.globals.LastProjectFolder),
      QStringLiteral("Bestand (*.sqlite);;Alle Dateien (*)"));
  if (!files.isEmpty()) Open(ToPath(files.front()));
}

void InventoryWindow::Open(const std::filesystem::path& database) {
  if (IsScanning()) {
    desk_.interaction.Show("Die Ordner werden noch durchsucht. Danach lässt sich ein anderer Bestand öffnen.");
    return;
  }
  desk_.interaction.Attempt([&] {
    const Working working(desk_.interaction);
    model_->Open(database);
    database_ = database;
    setWindowTitle(QStringLiteral("Bestand ") + FromPath(database));
    const inventory::Overview all = model_->Stock()->Summarize();
    const QLocale numbers;
    const auto number = [&numbers](std::int64_t value) { return numbers.toString(static_cast<qlonglong>(value)); };
    overview_->setText(
        QStringLiteral("Dateien: %1; verschiedene Inhalte: %2; Module: %3; Routinen: %4; Zeilen Code: %5")
            .arg(number(all.files), number(all.contents), number(all.modules), number(all.routines),
                 number(all.codeLines)));
    question_->setCurrentIndex(static_cast<int>(inventory::Question::kMacros));
    ApplyFilter();
    files_->setFocus();
  });
  ShowState();
}

void InventoryWindow::ChooseFolders() {
  const QString database = FromPath(database_);
  auto* choice =
      new InventoryChoice(this, desk_.interaction.Desktop(), database, FromUtf8(desk_.globals.LastProjectFolder));
  connect(choice, &QDialog::accepted, this, [this, choice] { Scan(choice->Order()); });
  choice->open();
}

void InventoryWindow::Scan(const InventoryOrder& order) {
  model_->Close();
  details_->clear();
  job_ = std::make_unique<InventoryJob>(order, programFolder_);
  connect(job_.get(), &InventoryJob::Finished, this, &InventoryWindow::TakeResult);
  setWindowTitle(QStringLiteral("Bestand ") + FromPath(order.database));
  overview_->setText(QStringLiteral("Die Ordner werden durchsucht. Was gelesen ist, bleibt, auch wenn Sie abbrechen."));
  status_->clear();
  count_->clear();
  bar_->setRange(0, 0);
  job_->Start();
  clock_.start();
  ShowState();
}

void InventoryWindow::TakeResult() {
  clock_.stop();
  // It is on the way back from telling so.
  InventoryJob* done = job_.release();
  done->setParent(this);
  done->deleteLater();
  overview_->clear();
  if (inventory::Inventory::IsInventory(done->Order().database)) Open(done->Order().database);
  const QString result = done->Error().empty() ? done->ResultText() : FromUtf8(done->Error());
  overview_->setText(result + QLatin1Char('\n') + overview_->text());
  ShowState(false);
  TellProblems(done->Problems());
}

void InventoryWindow::TellProblems(const std::vector<std::string>& problems) {
  if (problems.empty()) return;
  std::string list;
  for (const std::string& problem : problems) list += problem + "\n";
  // The window may be gone when its turn comes.
  desk_.interaction.GuardedInTurn([&interaction = desk_.interaction, first = problems.front(), list] {
    interaction.Show("Nicht alle Ordner ließen sich durchsuchen.", MessageIcon::kExclamation, Buttons::kOk, first,
                     list);
  });
}

void InventoryWindow::ApplyFilter() {
  typed_.stop();
  model_->SetFilter({.question = static_cast<inventory::Question>(question_->currentIndex()),
                     .text = ToUtf8(search_->text().trimmed())});
  if (!model_->Problem().empty()) overview_->setText(FromUtf8(model_->Problem()));
  count_->setText(QStringLiteral("Dateien: ") + QLocale().toString(model_->rowCount()));
  if (model_->rowCount() > 0) {
    files_->setCurrentIndex(model_->index(0, 0));
  } else {
    details_->clear();
  }
}

void InventoryWindow::ShowDetails() {
  details_->clear();
  const QModelIndex current = files_->currentIndex();
  if (!current.isValid() || model_->Stock() == nullptr) return;
  desk_.interaction.Attempt([&] {
    const inventory::FileDetails details = model_->Stock()->DetailsOf(model_->NumberAt(current.row()));
    int columns = 2;
    for (const auto& table : details.tables) columns = std::max(columns, static_cast<int>(table.heads.size()));
    details_->setColumnCount(columns);
    for (const auto& [name, value] : details.properties) details_->addTopLevelItem(MakeRow({name, value}));
    for (const auto& table : details.tables) {
      auto* top = new QTreeWidgetItem({QStringLiteral("%1 (%2)").arg(FromUtf8(table.title)).arg(table.rows.size())});
      QTreeWidgetItem* heads = MakeRow(table.heads);
      heads->setDisabled(true);
      top->addChild(heads);
      for (std::size_t row = 0; row < std::min(table.rows.size(), kMostDetails); ++row) {
        top->addChild(MakeRow(table.rows[row]));
      }
      details_->addTopLevelItem(top);
      top->setFirstColumnSpanned(true);
    }
    FitDetails();
  });
}

void InventoryWindow::FitDetails() {
  const int widest = kWidestDetail * fontMetrics().averageCharWidth();
  for (int column = 0; column < details_->columnCount(); ++column) {
    details_->resizeColumnToContents(column);
    details_->setColumnWidth(column, std::min(details_->columnWidth(column), widest));
  }
}

void InventoryWindow::ChooseFile(const QModelIndex& index) {
  if (!index.isValid() || model_->Stock() == nullptr) return;
  QString path;
  desk_.interaction.Attempt([&] { path = FromPath(model_->Stock()->PathOf(model_->NumberAt(index.row()))); });
  if (!path.isEmpty()) emit FileChosen(path);
}

QString InventoryWindow::AskReport(const QString& extension, const char* filter) {
  const QString file = SaveFileDialog(desk_.interaction, extension, filter, FromUtf8(desk_.globals.LastProjectFolder),
                                      QStringLiteral("Bestand"));
  if (file.isEmpty()) return file;
  desk_.readFiles.Check({ToPath(file)}, {database_});
  return file;
}

void InventoryWindow::WriteReport() {
  const QString file = AskReport(QStringLiteral("html"), "HTML-Bericht:html,htm;");
  if (file.isEmpty()) return;
  {
    const Working working(desk_.interaction);
    std::string html;
    inventory::WriteReportPage(*model_->Stock(), 0, [&html](std::string_view piece) { html += piece; });
    files::ReplaceFile(ToPath(file), html);
  }
  desk_.interaction.Desktop().OpenInBrowser(file);
}

void InventoryWindow::WriteWorkbook() {
  const QString file = AskReport(QStringLiteral("xlsx"), "Arbeitsmappe:xlsx;");
  if (file.isEmpty()) return;
  const Working working(desk_.interaction);
  inventory::WriteReportWorkbook(*model_->Stock(), 0, ToPath(file));
}

}  // namespace quillmate::ui
