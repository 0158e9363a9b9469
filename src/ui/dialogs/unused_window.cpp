#include "unused_window.h"

#include <QHeaderView>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/windows1252.h>

#include "background_job.h"
#include "button_row.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::Grade;

/// Of the jobs that read the project's files.
constexpr const char* kJobName = "SucheUnbenutzt";

constexpr QSize kStartSize(560, 520);

QString Summary(const std::vector<JudgedRoutine>& routines) {
  if (routines.empty()) return QStringLiteral("Jede Routine wird aufgerufen.");
  if (!routines.front().grade) return QStringLiteral("Routinen ohne Aufruf: %1").arg(routines.size());
  const auto count = [&routines](Grade grade) {
    return std::ranges::count(routines, std::optional(grade), &JudgedRoutine::grade);
  };
  QString text = QStringLiteral("Routinen ohne Aufruf: %1 (%2 sicher, %3 vom Host, %4 per Text")
                     .arg(routines.size())
                     .arg(count(Grade::kCertain))
                     .arg(count(Grade::kHost))
                     .arg(count(Grade::kText));
  for (const Grade grade : {Grade::kPossible, Grade::kSelf, Grade::kInactive}) {
    if (count(grade) > 0) text += QStringLiteral(", %1 %2").arg(count(grade)).arg(GradeCaption(grade));
  }
  return text + QLatin1Char(')');
}

}  // namespace

UnusedWindow::UnusedWindow(QWidget* parent, const ListDesk& desk, FindUnused find)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      model_(new UnusedModel(this)),
      lblErgebnis_(new QLabel(QStringLiteral("Routinen ohne Aufruf werden gesucht ..."))),
      chkNurSicher_(new QCheckBox(QStringLiteral("Nur &sichere zeigen"))),
      treUnbenutzt_(new QTreeView) {
  setObjectName(QStringLiteral("frmUnbenutzt"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Routinen ohne Aufruf"));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  lblErgebnis_->setObjectName(QStringLiteral("lblErgebnis"));
  lblErgebnis_->setTextFormat(Qt::PlainText);
  lblErgebnis_->setWordWrap(true);
  chkNurSicher_->setObjectName(QStringLiteral("chkNurSicher"));
  treUnbenutzt_->setObjectName(QStringLiteral("treUnbenutzt"));
  treUnbenutzt_->setAccessibleName(windowTitle());
  treUnbenutzt_->setUniformRowHeights(true);
  treUnbenutzt_->setAllColumnsShowFocus(true);
  treUnbenutzt_->setModel(model_);
  treUnbenutzt_->header()->setStretchLastSection(false);
  treUnbenutzt_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblErgebnis_);
  layout->addWidget(chkNurSicher_);
  layout->addWidget(treUnbenutzt_, 1);
  layout->addWidget(MakeButtons());
  connect(chkNurSicher_, &QCheckBox::toggled, this, [this](bool on) {
    model_->ShowCertainOnly(on);
    treUnbenutzt_->expandAll();
  });
  connect(treUnbenutzt_, &QTreeView::clicked, this, &UnusedWindow::ShowRoutine);
  connect(treUnbenutzt_, &QTreeView::activated, this, &UnusedWindow::ShowRoutine);
  treUnbenutzt_->setFocus();
  Search(std::move(find));
}

QWidget* UnusedWindow::MakeButtons() {
  auto* row = new ButtonRow;
  copy_ =
      row->Add("cmdKopieren", "&Kopieren", [this] { desk_.interaction.Guarded([this] { CopyList(desk_, Texts()); }); });
  save_ = row->Add("cmdSpeichern", "S&peichern ...",
                   [this] { desk_.interaction.Guarded([this] { SaveList(desk_, Texts()); }); });
  row->Add("cmdSchliessen", "S&chliessen", [this] { close(); });
  copy_->setDisabled(true);
  save_->setDisabled(true);
  return row;
}

void UnusedWindow::Search(FindUnused find) {
  const auto found = std::make_shared<std::vector<JudgedRoutine>>();
  // Not the window's: when that is closed, nobody waits for the end of the thread.
  auto* job = new BackgroundJob(
      [found, find = std::move(find)](BackgroundJob& run) { *found = find(run.CancelFlag()); }, parent());
  job->setObjectName(QString::fromLatin1(kJobName));
  connect(this, &QObject::destroyed, job, &BackgroundJob::Cancel);
  connect(job, &BackgroundJob::Finished, job, &QObject::deleteLater);
  connect(job, &BackgroundJob::Finished, this, [this, job, found] {
    lblErgebnis_->setText(job->Error().empty() ? Summary(*found) : FromUtf8(job->Error()));
    copy_->setDisabled(found->empty());
    save_->setDisabled(found->empty());
    model_->SetRoutines(std::move(*found));
    treUnbenutzt_->expandAll();
    if (!treUnbenutzt_->currentIndex().isValid()) treUnbenutzt_->setCurrentIndex(model_->index(0, 0));
  });
  job->Start();
}

void UnusedWindow::FinishReading(QWidget& parent) {
  const auto jobs = parent.findChildren<BackgroundJob*>(QString::fromLatin1(kJobName), Qt::FindDirectChildrenOnly);
  for (const BackgroundJob* job : jobs) job->FinishReading();
}

void UnusedWindow::ShowRoutine(const QModelIndex& index) {
  const JudgedRoutine* judged = model_->RoutineAt(index);
  if (judged == nullptr) return;
  desk_.interaction.Guarded([this, routine = judged->routine.routineNumber] {
    const int node = desk_.session.Tree()->Find(routine);
    if (node >= 0) desk_.session.GoToNode(node);
  });
}

ListTexts UnusedWindow::Texts() const {
  const auto shown = std::make_shared<std::vector<JudgedRoutine>>();
  for (std::size_t i = 0; i < model_->ShownCount(); ++i) shown->push_back(model_->Shown(i));
  return {{"ohne Aufruf",
           {"Modul", "Routine", "Klasse"},
           [shown](output::TableSink& sink) {
             for (const JudgedRoutine& judged : *shown) {
               sink.Text(text::Utf8FromCode(judged.routine.moduleName))
                   .Text(text::Utf8FromCode(judged.routine.routineName))
                   .Text(ToUtf8(GradeCaption(judged.grade)))
                   .EndRow();
             }
           }},
          {},
          shown->size()};
}

}  // namespace quillmate::ui
