#include "matrix_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "button_row.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr QSize kStartSize(900, 640);
/// Widths in characters.
constexpr int kCellWidth = 6;
constexpr int kMostHeadWidth = 32;

}  // namespace

MatrixWindow::MatrixWindow(QWidget* parent, const ListDesk& desk, std::shared_ptr<const project::Understanding> known)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      matrix_(new ModuleMatrix(std::move(known), this)),
      filter_(new QLineEdit),
      cyclesOnly_(new QCheckBox(QStringLiteral("Nur Module in &Kreisen"))),
      count_(new QLabel),
      table_(new QTableView),
      cell_(new QLabel) {
  setObjectName(QStringLiteral("frmAbhaengigkeiten"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Abhängigkeiten der Module"));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  count_->setObjectName(QStringLiteral("lblAbhaengigkeiten"));
  count_->setTextFormat(Qt::PlainText);
  count_->setWordWrap(true);
  cell_->setObjectName(QStringLiteral("lblZelle"));
  cell_->setTextFormat(Qt::PlainText);
  BuildTable();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(count_);
  layout->addWidget(MakeFilter());
  layout->addWidget(table_, 1);
  layout->addWidget(cell_);
  layout->addWidget(MakeButtons());
  count_->setText(CountText());
  table_->setFocus();
}

void MatrixWindow::BuildTable() {
  table_->setObjectName(QStringLiteral("lstAbhaengigkeiten"));
  table_->setAccessibleName(windowTitle());
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setHorizontalHeader(new UprightHeader(table_));
  table_->setModel(matrix_);
  const QFontMetrics metrics = table_->fontMetrics();
  // Sections of one size need not be measured one by one.
  const int margin = 2 * (table_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 2);
  for (QHeaderView* head : {table_->horizontalHeader(), table_->verticalHeader()}) {
    head->setSectionResizeMode(QHeaderView::Fixed);
    head->setMinimumSectionSize(metrics.height());
  }
  table_->horizontalHeader()->setDefaultSectionSize(metrics.averageCharWidth() * kCellWidth);
  table_->verticalHeader()->setDefaultSectionSize(metrics.height() + margin);
  table_->verticalHeader()->setMaximumWidth(metrics.averageCharWidth() * kMostHeadWidth);
  table_->setTabKeyNavigation(false);
  table_->installEventFilter(this);
  connect(table_, &QTableView::clicked, this, &MatrixWindow::Choose);
  connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& now) {
    cell_->setText(matrix_->CellText(now));
    table_->horizontalHeader()->viewport()->update();
  });
}

QWidget* MatrixWindow::MakeFilter() {
  filter_->setObjectName(QStringLiteral("txtModule"));
  filter_->setAccessibleName(QStringLiteral("Filter der Module"));
  filter_->setPlaceholderText(QStringLiteral("Nur Module mit diesem Text im Namen"));
  filter_->setClearButtonEnabled(true);
  cyclesOnly_->setObjectName(QStringLiteral("chkKreise"));
  cyclesOnly_->setEnabled(matrix_->Cycles() > 0);
  connect(filter_, &QLineEdit::textChanged, this, &MatrixWindow::Filter);
  connect(cyclesOnly_, &QCheckBox::toggled, this, &MatrixWindow::Filter);
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(filter_, 1);
  layout->addWidget(cyclesOnly_);
  return row;
}

QWidget* MatrixWindow::MakeButtons() {
  auto* row = new ButtonRow;
  const auto guarded = [this](void (*work)(const ListDesk&, const ListTexts&)) {
    return [this, work] {
      desk_.interaction.Guarded([this, work] { work(desk_, {matrix_->AsTable(), {}, matrix_->Uses().size()}); });
    };
  };
  QPushButton* copy = row->Add("cmdKopieren", "K&opieren", guarded(CopyList));
  QPushButton* save = row->Add("cmdSpeichern", "S&peichern ...", guarded(SaveList));
  row->Add("cmdSchliessen", "S&chließen", [this] { close(); });
  copy->setDisabled(matrix_->Uses().empty());
  save->setDisabled(matrix_->Uses().empty());
  return row;
}

QString MatrixWindow::CountText() const {
  if (matrix_->Uses().empty()) {
    return matrix_->rowCount() < 2 ? QStringLiteral("Das Projekt hat nur ein Modul.")
                                   : QStringLiteral("Kein Modul benutzt ein anderes.");
  }
  const QLocale numbers;
  const std::size_t cycles = matrix_->Cycles();
  const QString text = QStringLiteral("Das Modul der Zeile benutzt das der Spalte so oft. Abhängigkeiten: %1, %2")
                           .arg(numbers.toString(matrix_->Uses().size()));
  return text.arg(cycles == 0   ? QStringLiteral("keine Kreise.")
                  : cycles == 1 ? QStringLiteral("1 Kreis (rot).")
                                : numbers.toString(cycles) + QStringLiteral(" Kreise (rot)."));
}

void MatrixWindow::Filter() {
  matrix_->SetFilter(filter_->text().trimmed(), cyclesOnly_->isChecked());
  cell_->setText(matrix_->rowCount() == 0 ? QStringLiteral("Kein Modul heißt so.") : QString());
}

void MatrixWindow::Choose(const QModelIndex& index) {
  const symbols::ModuleUse* use = matrix_->UseAt(index);
  if (use != nullptr) emit UsesWanted(use->from, use->to);
}

bool MatrixWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      Choose(table_->currentIndex());
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace quillmate::ui
