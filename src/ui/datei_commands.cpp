#include <quillmate/files/paths.h>
#include <quillmate/office/office_file.h>

#include "commands.h"
#include "host_list.h"
#include "project_files.h"
#include "project_view.h"
#include "qt_text.h"
#include "saved_project.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

/// The dialog's kinds of files: all that can be a source, Office files, modules and projects, everything.
QString FileFilter() {
  QStringList office;
  for (const std::string_view extension : office::OfficeFileExtensions()) {
    office << QStringLiteral("*.") + FromUtf8(std::string(extension));
  }
  const QString modules = QStringLiteral("*.bas *.cls *.frm *.ctl *.pag *.dob *.dsr *.vbp");
  const QString documents = office.join(u' ') + QStringLiteral(" vbaProject.bin");
  return QStringLiteral("Alle Quellen (%1 %2);;Office-Dateien (%1);;VBA-Module und VB-Projekte (%2);;Alle Dateien (*)")
      .arg(documents, modules);
}

}  // namespace

void OpenSavedProject(Shell& shell) {
  const QString folder = shell.around.platform.ChooseFolder(QStringLiteral("Bitte Projekt auswählen"),
                                                            FromUtf8(shell.Globals().LastProjectFolder));
  if (!folder.isEmpty()) OpenProjectFolder(shell, ToPath(folder));
}

void OpenRecent(Shell& shell, std::size_t position) {
  if (position < shell.recent.size()) OpenProjectFolder(shell, files::PathFromText(shell.recent[position]));
}

void StartAnew(Shell& shell) {
  if (!ConfirmUnsaved(shell)) return;
  // Without a project it is the button that looks again.
  const bool looksAgain = shell.mode == 0;
  ResetProject(shell);
  RefreshHostProjects(shell);
  if (looksAgain) OfferToForgetUnreadable(shell);
}

void SaveProjectAs(Shell& shell) { SaveProject(shell); }

void AddFiles(Shell& shell) {
  const QStringList files = shell.around.platform.ChooseFiles(
      QStringLiteral("Dateien hinzufügen"), FromUtf8(shell.Globals().LastProjectFolder), FileFilter());
  if (!files.isEmpty()) AddSources(shell, files);
}

void AddFolder(Shell& shell) {
  const QString folder = shell.around.platform.ChooseFolder(QStringLiteral("Ordner hinzufügen"),
                                                            FromUtf8(shell.Globals().LastProjectFolder));
  if (!folder.isEmpty()) AddSources(shell, {folder});
}

void RemoveSource(Shell& shell) { RemoveSourceOf(shell, shell.hostModel->ProjectOf(shell.treApp->currentIndex())); }

void EndProgram(Shell& shell) { shell.window.close(); }

}  // namespace quillmate::ui
