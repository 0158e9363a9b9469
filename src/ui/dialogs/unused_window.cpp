#include "unused_window.h"

#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/windows1252.h>

#include "button_row.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::Grade;

/// Routine number of an item; modules have none.
constexpr int kRoutineRole = Qt::UserRole;

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

QTreeWidgetItem* MakeItem(const JudgedRoutine& judged) {
  auto* item = new QTreeWidgetItem({FromCode(judged.routine.routineName), GradeCaption(judged.grade)});
  item->setData(0, kRoutineRole, judged.routine.routineNumber.value);
  item->setToolTip(1, judged.reason);
  return item;
}

}  // namespace

UnusedWindow::UnusedWindow(QWidget* parent, const ListDesk& desk, std::vector<JudgedRoutine> routines)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      routines_(std::move(routines)),
      lblErgebnis_(new QLabel(Summary(routines_))),
      chkNurSicher_(new QCheckBox(QStringLiteral("Nur &sichere zeigen"))),
      treUnbenutzt_(new QTreeWidget) {
  setObjectName(QStringLiteral("frmUnbenutzt"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Routinen ohne Aufruf"));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  lblErgebnis_->setObjectName(QStringLiteral("lblErgebnis"));
  chkNurSicher_->setObjectName(QStringLiteral("chkNurSicher"));
  treUnbenutzt_->setObjectName(QStringLiteral("treUnbenutzt"));
  treUnbenutzt_->setAccessibleName(windowTitle());
  treUnbenutzt_->setHeaderLabels({QStringLiteral("Routine"), QStringLiteral("Klasse")});
  treUnbenutzt_->header()->setStretchLastSection(false);
  treUnbenutzt_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  treUnbenutzt_->setUniformRowHeights(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblErgebnis_);
  layout->addWidget(chkNurSicher_);
  layout->addWidget(treUnbenutzt_, 1);
  layout->addWidget(MakeButtons());
  connect(chkNurSicher_, &QCheckBox::toggled, this, [this] { Fill(); });
  connect(treUnbenutzt_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { ShowRoutine(*item); });
  connect(treUnbenutzt_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { ShowRoutine(*item); });
  Fill();
}

QWidget* UnusedWindow::MakeButtons() {
  auto* row = new ButtonRow;
  QPushButton* copy =
      row->Add("cmdKopieren", "&Kopieren", [this] { desk_.interaction.Guarded([this] { CopyList(desk_, Texts()); }); });
  QPushButton* save = row->Add("cmdSpeichern", "S&peichern ...",
                               [this] { desk_.interaction.Guarded([this] { SaveList(desk_, Texts()); }); });
  row->Add("cmdSchliessen", "S&chliessen", [this] { close(); });
  copy->setDisabled(routines_.empty());
  save->setDisabled(routines_.empty());
  return row;
}

std::vector<JudgedRoutine> UnusedWindow::Shown() const {
  std::vector<JudgedRoutine> shown;
  std::copy_if(routines_.begin(), routines_.end(), std::back_inserter(shown), [this](const JudgedRoutine& judged) {
    return !chkNurSicher_->isChecked() || judged.grade == Grade::kCertain;
  });
  return shown;
}

void UnusedWindow::Fill() {
  QList<QTreeWidgetItem*> modules;
  codedb::ModuleNumber module;
  for (const JudgedRoutine& judged : Shown()) {
    const analysis::UnusedRoutine& routine = judged.routine;
    if (modules.isEmpty() || routine.moduleNumber != module) {
      modules.append(new QTreeWidgetItem(QStringList(FromCode(routine.moduleName))));
      module = routine.moduleNumber;
    }
    modules.back()->addChild(MakeItem(judged));
  }
  treUnbenutzt_->clear();
  treUnbenutzt_->addTopLevelItems(modules);
  treUnbenutzt_->expandAll();
}

void UnusedWindow::ShowRoutine(const QTreeWidgetItem& item) {
  const codedb::RoutineNumber routine{item.data(0, kRoutineRole).toInt()};
  if (routine.value == 0) return;
  desk_.interaction.Guarded([this, routine] {
    const int node = desk_.session.Tree()->Find(routine);
    if (node >= 0) desk_.session.GoToNode(node);
  });
}

ListTexts UnusedWindow::Texts() const {
  return {{"ohne Aufruf", {"Modul", "Routine", "Klasse"}, [this](output::TableSink& sink) {
             for (const auto& [routine, grade, reason] : Shown()) {
               sink.Text(text::Utf8FromCode(routine.moduleName))
                   .Text(text::Utf8FromCode(routine.routineName))
                   .Text(ToUtf8(GradeCaption(grade)))
                   .EndRow();
             }
           }}};
}

}  // namespace quillmate::ui
