#include "list_window.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QScreen>
#include <QVBoxLayout>
#include <memory>
#include <utility>

#include "background_job.h"
#include "button_row.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr QSize kStartSize(1000, 560);
/// So many rows are sorted and filtered in no time.
constexpr std::size_t kKeysAtOnce = 2000;

}  // namespace

ListWindow::ListWindow(QWidget* parent, const ListDesk& desk, ListSource source)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      model_(new ListModel(std::move(source), this)),
      filter_(new QLineEdit),
      count_(new QLabel),
      list_(new QTreeView) {
  setObjectName(model_->Source().name);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(model_->Source().title);
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  filter_->setObjectName(QStringLiteral("txtListe"));
  filter_->setAccessibleName(QStringLiteral("Filter der Liste"));
  filter_->setPlaceholderText(QStringLiteral("Nur Zeilen mit diesem Text"));
  filter_->setClearButtonEnabled(true);
  filter_->installEventFilter(this);
  count_->setObjectName(QStringLiteral("lblListe"));
  count_->setTextFormat(Qt::PlainText);
  list_->setObjectName(QStringLiteral("lstListe"));
  list_->setAccessibleName(model_->Source().title);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setModel(model_);
  list_->header()->setSortIndicator(-1, Qt::AscendingOrder);
  list_->setSortingEnabled(true);
  const int character = list_->fontMetrics().averageCharWidth();
  for (std::size_t column = 0; column < model_->Source().columns.size(); ++column) {
    list_->header()->resizeSection(static_cast<int>(column), model_->Source().columns[column].width * character);
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(count_);
  layout->addWidget(filter_);
  layout->addWidget(list_, 1);
  layout->addWidget(MakeButtons());
  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
    model_->SetFilter(text.trimmed());
    ShowCount();
  });
  connect(list_, &QTreeView::clicked, this, &ListWindow::Choose);
  connect(list_, &QTreeView::activated, this, &ListWindow::Choose);
  ShowCount();
  filter_->setFocus();
  Search();
}

void ListWindow::Search() {
  // Not the window's: when that is closed, nobody waits for the end of the thread.
  const auto rows = std::make_shared<ListRows>();
  auto* job = new BackgroundJob(
      [rows, find = model_->Source().find](BackgroundJob& run) { *rows = find(&run.CancelFlag()); }, parent());
  connect(this, &QObject::destroyed, job, &BackgroundJob::Cancel);
  connect(job, &BackgroundJob::Finished, job, &QObject::deleteLater);
  connect(job, &BackgroundJob::Finished, this, [this, job, rows] {
    isFound_ = true;
    error_ = FromUtf8(job->Error());
    model_->SetRows(std::move(*rows));
    const QHeaderView& header = *list_->header();
    if (header.sortIndicatorSection() >= 0) {
      list_->sortByColumn(header.sortIndicatorSection(), header.sortIndicatorOrder());
    }
    copy_->setDisabled(model_->Rows().count == 0);
    save_->setDisabled(model_->Rows().count == 0);
    ShowCount();
    if (model_->Rows().count > kKeysAtOnce) MakeKeys();
  });
  job->Start();
}

/// Before they are needed, so that typing and sorting don't wait for them.
void ListWindow::MakeKeys() {
  const auto keys = std::make_shared<ListKeys>();
  auto* job = new BackgroundJob([keys, list = model_->Source(), rows = model_->Rows()](
                                    BackgroundJob& run) { *keys = KeysOf(list, rows, &run.CancelFlag()); },
                                parent());
  connect(this, &QObject::destroyed, job, &BackgroundJob::Cancel);
  connect(job, &BackgroundJob::Finished, job, &QObject::deleteLater);
  connect(job, &BackgroundJob::Finished, this, [this, job, keys] {
    if (job->IsMade() && !job->IsCancelled()) model_->SetKeys(std::move(*keys));
  });
  job->Start();
}

QWidget* ListWindow::MakeButtons() {
  auto* row = new ButtonRow;
  copy_ =
      row->Add("cmdKopieren", "&Kopieren", [this] { desk_.interaction.Guarded([this] { CopyList(desk_, Texts()); }); });
  save_ = row->Add("cmdSpeichern", "S&peichern ...",
                   [this] { desk_.interaction.Guarded([this] { SaveList(desk_, Texts()); }); });
  row->Add("cmdSchliessen", "S&chließen", [this] { close(); });
  copy_->setDisabled(true);
  save_->setDisabled(true);
  return row;
}

void ListWindow::ShowCount() {
  const std::size_t all = model_->Rows().count;
  const auto shown = static_cast<std::size_t>(model_->rowCount());
  const QLocale numbers;
  count_->setText(!isFound_           ? model_->Source().waiting
                  : !error_.isEmpty() ? error_
                  : all == 0          ? model_->Source().nothing
                  : shown == all      ? QStringLiteral("Zeilen: ") + numbers.toString(all)
                  : shown == 0
                      ? QStringLiteral("Keine Zeile enthält diesen Text.")
                      : QStringLiteral("Zeilen: %1 von %2").arg(numbers.toString(shown), numbers.toString(all)));
}

void ListWindow::Choose(const QModelIndex& index) {
  if (index.isValid()) emit PlaceChosen(model_->Rows().place(model_->SourceRow(index.row())));
}

ListTexts ListWindow::Texts() const {
  output::Table table = TableOf(model_->Source(), model_->Rows());
  table.rows = [list = model_->Source(), rows = model_->Rows(), shown = model_->Shown()](output::TableSink& sink) {
    for (const std::uint32_t row : shown) WriteRow(list, rows, row, sink);
  };
  return {table, {}, model_->Shown().size()};
}

bool ListWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
    list_->setFocus();
    if (!list_->currentIndex().isValid()) list_->setCurrentIndex(model_->index(0, 0));
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace quillmate::ui
