#include <quillmate/codedb/index_files.h>

#include "commands.h"
#include "host_list.h"
#include "project_files.h"
#include "project_view.h"
#include "qt_text.h"
#include "saved_project.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

const QString kFileFilter =
    QStringLiteral("VBA-Module und VB-Projekte (*.bas *.cls *.frm *.ctl *.pag *.dob *.dsr *.vbp);;Alle Dateien (*)");

}  // namespace

void OpenSavedProject(Shell& shell) {
  const QString folder = shell.around.platform.ChooseFolder(QStringLiteral("Bitte Projekt auswählen"),
                                                            FromUtf8(shell.Globals().LastProjectFolder));
  if (!folder.isEmpty()) OpenProjectFolder(shell, ToPath(folder));
}

void OpenRecent(Shell& shell, std::size_t position) {
  if (position < shell.recent.size()) OpenProjectFolder(shell, codedb::PathFromText(shell.recent[position]));
}

void StartAnew(Shell& shell) {
  if (!ConfirmUnsaved(shell)) return;
  ResetProject(shell);
  RefreshHostProjects(shell);
}

void SaveProjectAs(Shell& shell) { SaveProject(shell); }

void AddFiles(Shell& shell) {
  const QStringList files = shell.around.platform.ChooseFiles(QStringLiteral("Dateien hinzufügen"),
                                                              FromUtf8(shell.Globals().LastProjectFolder), kFileFilter);
  if (!files.isEmpty()) AddSources(shell, files);
}

void AddFolder(Shell& shell) {
  const QString folder = shell.around.platform.ChooseFolder(QStringLiteral("Ordner hinzufügen"),
                                                            FromUtf8(shell.Globals().LastProjectFolder));
  if (!folder.isEmpty()) AddSources(shell, {folder});
}

void RemoveSource(Shell& shell) {
  const int project = shell.hostModel->ProjectOf(shell.treApp->currentIndex());
  if (project >= 0) RemoveSourceOf(shell, project);
}

void EndProgram(Shell& shell) { shell.window.close(); }

}  // namespace quillmate::ui
