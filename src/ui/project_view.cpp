#include "project_view.h"

#include <exception>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>

#include "project_files.h"
#include "qt_text.h"
#include "shell.h"
#include "tree_filter.h"
#include "unused_window.h"

namespace quillmate::ui {
namespace {

/// The tree of the index in the current project folder, with its code views. The window keeps what it has until all of
/// it could be read.
struct OpenedProject {
  navigation::ProjectTree tree;
  navigation::CodeViews views;
};

OpenedProject OpenProject(startup::AppGlobals& globals) {
  OpenedProject project;
  globals.CodeDb.Open(codedb::DatabasePath(globals.TempFolder));
  navigation::FillModuleNodes(globals.CodeDb, project.tree);
  if (project.tree.moduleCount > 0) project.views.Load(globals.TempFolder, project.tree.moduleCount);
  navigation::FillRoutineNodes(globals.CodeDb, project.tree);
  // The module that is shown first is read now: a project that can't be shown is not opened at all.
  if (!project.tree.nodes.empty()) project.views.View(codedb::KeyNumber(project.tree.nodes.front().key) - 1);
  return project;
}

void SetProject(Shell& shell, OpenedProject project) {
  const UpdateLock lock(shell.window);
  CloseUnusedWindow(shell);
  shell.rtbHaupt->Forget();
  shell.views = std::move(project.views);
  shell.treeFilter->Clear();
  shell.projectModel->SetTree(std::move(project.tree));
  StartWhereabouts(shell);
  if (shell.Globals().Options.aufk) shell.treProjekt->expandAll();
}

}  // namespace

bool ReloadProject(Shell& shell) {
  const Working working(shell);
  shell.ShowProgress("Lese Projekt");
  try {
    SetProject(shell, OpenProject(shell.Globals()));
    shell.ShowTree(*shell.treProjekt);
    shell.SetMode(1);
    if (!shell.projectModel->Tree().nodes.empty()) {
      shell.treProjekt->setCurrentIndex(shell.projectModel->IndexOf(0));
      ShowNode(shell, 0);
    }
    return true;
  } catch (const std::exception&) {
    shell.Globals().CodeDb.Close();
    shell.Show(codedb::BrokenProjectMessage(shell.Globals().TempFolder), MessageIcon::kExclamation);
    return false;
  }
}

void ResetProject(Shell& shell) {
  startup::AppGlobals& globals = shell.Globals();
  globals.CodeDb.Close();
  globals.TempFolder = globals.RunTempFolder;
  codedb::DeleteScratchFiles(globals.TempFolder);
  const UpdateLock lock(shell.window);
  CloseUnusedWindow(shell);
  shell.rtbHaupt->Forget();
  shell.views.Reset();
  shell.treeFilter->Clear();
  shell.projectModel->SetTree({});
  StartWhereabouts(shell);
  shell.ShowTree(*shell.treApp);
  shell.SetMode(0);
  shell.SetCaption();
  shell.treApp->setFocus();
}

void ShowNode(Shell& shell, int node) {
  const navigation::ProjectTree& tree = shell.projectModel->Tree();
  const navigation::TreeNode& clicked = tree.nodes[static_cast<std::size_t>(node)];
  const bool isRoutine = clicked.parent >= 0;
  const navigation::TreeNode& module = isRoutine ? tree.nodes[static_cast<std::size_t>(clicked.parent)] : clicked;
  const int view = codedb::KeyNumber(module.key) - 1;

  ShowModule(shell, view);
  navigation::CodeView& code = shell.views.View(view);
  if (isRoutine) {
    const long line = navigation::RoutineStartLine(shell.Globals().CodeDb, codedb::KeyNumber(clicked.key));
    if (line > 0) code.GoToLine(line);
  } else {
    code.Select(0, 0);
  }
  shell.staBar->SetText(StatusPanels::kModule, FromCode(module.text));
  shell.staBar->SetText(StatusPanels::kRoutine, isRoutine ? FromCode(clicked.text) : QString());
  shell.whereabouts.caret.Forget();
  MarkVisibleModule(shell);
  if (isRoutine) PushPlace(shell);
  ShowPlace(shell);
}

bool ConfirmUnsaved(Shell& shell) {
  if (!shell.window.windowTitle().contains(QLatin1Char('['))) return true;
  switch (shell.Show("Projekt wurde nicht gespeichert !\r\nProjekt jetzt speichern ?", MessageIcon::kQuestion,
                     Buttons::kYesNoCancel)) {
    case Answer::kYes:
      return SaveProject(shell);
    case Answer::kNo:
      return true;
    default:
      return false;
  }
}

}  // namespace quillmate::ui
