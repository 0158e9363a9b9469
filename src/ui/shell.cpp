#include "shell.h"

#include <QApplication>
#include <QCoreApplication>
#include <exception>

#include "code_menu.h"
#include "commands.h"
#include "error_text.h"
#include "hit_panel.h"
#include "host_list.h"
#include "project_view.h"
#include "qt_text.h"
#include "search_bar.h"
#include "splitter.h"
#include "start_page.h"
#include "tree_filter.h"

namespace quillmate::ui {
namespace {

/// How often a long operation shows where it is, and lets the desktop see that the program lives.
constexpr qint64 kProgressPause = 50;

constexpr int kTreeWidth = 300;
constexpr int kCodeWidth = 800;

}  // namespace

Shell::Shell(MainWindow& mainWindow, const Surroundings& surroundings) : around(surroundings), window(mainWindow) {
  staBar = new StatusPanels(&window);
  window.setStatusBar(staBar);
  BuildTrees();
  BuildArea();
  commands = new CommandSet(window);
  QObject::connect(commands, &CommandSet::Triggered, commands,
                   [this](CommandId command) { Guarded([this, command] { RunCommand(*this, command); }); });
  BuildNavigation();
  WireContextMenus();
}

void Shell::BuildTrees() {
  treApp = new TickTree;
  SetUpTree(*treApp, QStringLiteral("treApp"));
  hostModel = new HostTreeModel(treApp);
  treApp->setModel(hostModel);

  treProjekt = new NodeTree;
  SetUpTree(*treProjekt, QStringLiteral("treProjekt"));
  projectModel = new ProjectTreeModel(treProjekt);
  treProjekt->setModel(projectModel);
  treProjekt->onNode = [this](const QModelIndex& index) {
    Guarded([this, index] { ShowNode(*this, ProjectTreeModel::NodeOf(index)); });
  };
}

void Shell::BuildArea() {
  trees = new QStackedWidget;
  trees->setMinimumWidth(1);
  trees->addWidget(treApp);
  treeFilter = AddProjectTree(*this);

  rtbHaupt = new CodeEditor;
  rtbHaupt->setObjectName(QStringLiteral("rtbHaupt"));
  rtbZoom = new CodeEditor;
  rtbZoom->setObjectName(QStringLiteral("rtbZoom"));
  codes = new QStackedWidget;
  codes->addWidget(rtbHaupt);
  codes->addWidget(rtbZoom);

  startPage = new StartPage(*this);
  area = new QStackedWidget;
  area->setMinimumWidth(1);
  area->addWidget(startPage);
  area->addWidget(codes);

  auto* container = new Splitter;
  container->addWidget(trees);
  container->addWidget(area);
  container->handle(1)->setObjectName(QStringLiteral("fraTeiler"));
  container->setStretchFactor(0, 0);
  container->setStretchFactor(1, 1);
  container->setSizes({kTreeWidth, kCodeWidth});
  window.setCentralWidget(container);
}

void Shell::BuildNavigation() {
  txtSuche = AddSearchText(*this);
  BuildCallerList(*this);
  hits = new HitPanel(*this);
  WireWhereabouts(*this);
}

void Shell::WireContextMenus() {
  QObject::connect(treApp, &QWidget::customContextMenuRequested, treApp, [this](const QPoint& position) {
    treApp->setCurrentIndex(treApp->indexAt(position));
    commands->Item(CommandId::kRemoveSource)
        .setEnabled(IsFromSource(*this, hostModel->ProjectOf(treApp->currentIndex())));
    commands->ShowPopup(PopupId::kReading, treApp->viewport()->mapToGlobal(position));
  });
  QObject::connect(rtbHaupt, &QWidget::customContextMenuRequested, rtbHaupt, [this](const QPoint& position) {
    const QPoint global = rtbHaupt->viewport()->mapToGlobal(position);
    commands->Item(CommandId::kRemoveSource).setEnabled(false);
    if (mode == 0) {
      commands->ShowPopup(PopupId::kReading, global);
    } else {
      ShowCodeMenu(*this, global);
    }
  });
  QObject::connect(startPage, &QWidget::customContextMenuRequested, startPage, [this](const QPoint& position) {
    commands->Item(CommandId::kRemoveSource).setEnabled(false);
    commands->ShowPopup(PopupId::kReading, startPage->mapToGlobal(position));
  });
  WireZoomMenu(*this);
}

void Shell::Guarded(const std::function<void()>& work) {
  if (busy_) return;
  busy_ = true;
  try {
    work();
  } catch (const std::exception& error) {
    Show(ErrorText(error), MessageIcon::kExclamation);
  } catch (...) {
    Show("Unbekannter Fehler", MessageIcon::kExclamation);
  }
  busy_ = false;
}

Answer Shell::Show(std::string_view text, MessageIcon icon, Buttons buttons, std::string_view detail) {
  return around.platform.Show({FromUtf8(Globals().AppTitle), FromUtf8(text), icon, buttons, FromUtf8(detail)});
}

void Shell::SetMode(int newMode) {
  if (newMode < 0 || newMode > 2) return;
  mode = newMode;
  commands->SetMode(mode);
  area->setCurrentWidget(mode == 0 ? static_cast<QWidget*>(startPage) : codes);
  if (mode == 0) staBar->ClearTexts();
}

void Shell::SetCaption(const QString& project) { window.setWindowTitle(FromUtf8(Globals().AppTitle) + project); }

QString Shell::ProjectName() const {
  const QString project = window.windowTitle().section(QStringLiteral(" Projekt: "), 1);
  // Behind the name of a project just read stand its file and a mark; a saved one may have brackets in its name.
  const bool saved = !project.endsWith(QStringLiteral(" [nicht gespeichert !!!]"));
  return saved ? project : project.section(QStringLiteral(" ["), 0, 0);
}

std::string Shell::VisibleSelection() { return std::string(Editor().SelectedCode()); }

void Shell::ShowProgress(std::string_view text) {
  const qint64 now = around.platform.Milliseconds();
  if (text.empty() || now - lastShown_ < kProgressPause) {
    staBar->SetText(StatusPanels::kProgress, FromUtf8(text));
    return;
  }
  lastShown_ = now;
  staBar->ShowProgress(FromUtf8(text));
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void Shell::ApplyOptions() {
  for (CodeEditor* editor : {rtbHaupt, rtbZoom}) editor->SetStyle(StyleOf(Globals().Options, window.logicalDpiX()));
}

void Shell::ShowTree(QTreeView& tree) {
  QWidget* page = &tree;
  while (page->parentWidget() != nullptr && page->parentWidget() != trees) page = page->parentWidget();
  trees->setCurrentWidget(page);
}

CodeEditor& Shell::Editor() const { return *static_cast<CodeEditor*>(codes->currentWidget()); }

Working::Working(Shell& shell) : shell_(shell) { QApplication::setOverrideCursor(Qt::WaitCursor); }

Working::~Working() {
  shell_.ShowProgress({});
  QApplication::restoreOverrideCursor();
}

}  // namespace quillmate::ui
