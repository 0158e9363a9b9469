#include "unused_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/files/replacement.h>

#include "qt_text.h"
#include "save_dialog.h"
#include "unused_report.h"

namespace quillmate::ui {
namespace {

using analysis::UnusedClass;
using analysis::UnusedRoutine;

/// Routine number of an item; modules have none.
constexpr int kRoutineRole = Qt::UserRole;

constexpr QSize kStartSize(560, 520);

QString Summary(const std::vector<UnusedRoutine>& routines) {
  if (routines.empty()) return QStringLiteral("Jede Routine wird aufgerufen.");
  const auto count = [&routines](UnusedClass unused) {
    return std::count_if(routines.begin(), routines.end(),
                         [unused](const UnusedRoutine& routine) { return routine.unused == unused; });
  };
  return QStringLiteral("Routinen ohne Aufruf: %1 (%2 sicher, %3 vom Host, %4 per Text)")
      .arg(routines.size())
      .arg(count(UnusedClass::kCertain))
      .arg(count(UnusedClass::kHost))
      .arg(count(UnusedClass::kText));
}

const char* ClassTooltip(UnusedClass unused) {
  switch (unused) {
    case UnusedClass::kCertain:
      return "Nichts im Projekt nennt diese Routine.";
    case UnusedClass::kHost:
      return "Der Host ruft sie auf: Ereignis, Startmakro oder Rückruf.";
    case UnusedClass::kText:
      return "Ihr Name steht in einer Zeichenkette oder in anderer Schreibung im Code.";
  }
  return "";
}

QTreeWidgetItem* MakeItem(const UnusedRoutine& routine) {
  auto* item = new QTreeWidgetItem({FromCode(routine.routineName), FromUtf8(UnusedCaption(routine.unused))});
  item->setData(0, kRoutineRole, routine.routineNumber.value);
  item->setToolTip(1, FromUtf8(ClassTooltip(routine.unused)));
  return item;
}

}  // namespace

UnusedWindow::UnusedWindow(QWidget* parent, Interaction& interaction, const startup::AppGlobals& globals,
                           project::Session& session, const ReadFiles& readFiles, std::vector<UnusedRoutine> routines)
    : QDialog(parent, Qt::Window),
      interaction_(interaction),
      globals_(globals),
      session_(session),
      readFiles_(readFiles),
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
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
  const auto add = [this, layout](const char* name, const char* caption, auto&& run) {
    auto* button = new QPushButton(QString::fromUtf8(caption));
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    layout->addWidget(button);
    connect(button, &QPushButton::clicked, this, run);
    return button;
  };
  QPushButton* copy = add("cmdKopieren", "&Kopieren", [this] { interaction_.Guarded([this] { Copy(); }); });
  QPushButton* save = add("cmdSpeichern", "S&peichern ...", [this] { interaction_.Guarded([this] { Save(); }); });
  add("cmdSchliessen", "S&chliessen", [this] { close(); });
  copy->setDisabled(routines_.empty());
  save->setDisabled(routines_.empty());
  return row;
}

std::vector<UnusedRoutine> UnusedWindow::Shown() const {
  std::vector<UnusedRoutine> shown;
  std::copy_if(routines_.begin(), routines_.end(), std::back_inserter(shown), [this](const UnusedRoutine& routine) {
    return !chkNurSicher_->isChecked() || routine.unused == UnusedClass::kCertain;
  });
  return shown;
}

void UnusedWindow::Fill() {
  QList<QTreeWidgetItem*> modules;
  codedb::ModuleNumber module;
  for (const UnusedRoutine& routine : Shown()) {
    if (modules.isEmpty() || routine.moduleNumber != module) {
      modules.append(new QTreeWidgetItem(QStringList(FromCode(routine.moduleName))));
      module = routine.moduleNumber;
    }
    modules.back()->addChild(MakeItem(routine));
  }
  treUnbenutzt_->clear();
  treUnbenutzt_->addTopLevelItems(modules);
  treUnbenutzt_->expandAll();
}

void UnusedWindow::ShowRoutine(const QTreeWidgetItem& item) {
  const codedb::RoutineNumber routine{item.data(0, kRoutineRole).toInt()};
  if (routine.value == 0) return;
  interaction_.Guarded([this, routine] {
    const int node = session_.Tree()->Find(routine);
    if (node >= 0) session_.GoToNode(node);
  });
}

void UnusedWindow::Copy() {
  interaction_.Desktop().ClearClipboard();
  interaction_.Desktop().SetClipboard({FromUtf8(UnusedText(Shown())), {}, {}});
  if (globals_.Options.meld) interaction_.Show("Liste in Zwischenablage");
}

void UnusedWindow::Save() {
  const QString name = FromUtf8(session_.Name()) + QStringLiteral(" ohne Aufruf");
  const QString file = SaveFileDialog(interaction_, QStringLiteral("csv"), "CSV-Tabelle:csv;Text:txt;",
                                      FromUtf8(globals_.LastProjectFolder), name);
  if (file.isEmpty()) return;
  const bool isTable = file.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive);
  const std::string bytes = isTable ? UnusedCsv(Shown()) : UnusedText(Shown());
  readFiles_.Check({ToPath(file)});
  files::ReplaceFile(ToPath(file), bytes);
}

}  // namespace quillmate::ui
