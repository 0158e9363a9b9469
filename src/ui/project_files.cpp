#include "project_files.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "project_folder.h"
#include "project_view.h"
#include "qt_text.h"
#include "recent_projects.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// The folder that gets the project's folder; empty when the user gives none.
fs::path ChooseProjectPath(Shell& shell) {
  fs::path standard = files::PathFromText(shell.Globals().LastProjectFolder);
  std::error_code ignored;
  if (shell.Globals().Options.stapro && fs::is_directory(standard, ignored)) return standard;
  return ToPath(shell.around.platform.ChooseFolder(QStringLiteral("Bitte Projektpfad auswählen"), FromPath(standard)));
}

std::string AskProjectName(Shell& shell) {
  const std::optional<QString> name =
      shell.around.platform.AskText(QStringLiteral("Projektname"), QStringLiteral("Bitte Projektnamen angeben"), {});
  return CleanName(std::string(text::Trim(ToUtf8(name.value_or(QString())))));
}

/// True when the folder would be swept away with what crashed runs leave behind.
bool IsInScratchRoot(const fs::path& folder) {
  std::error_code failed;
  const fs::path real = files::RealPath(folder, failed);
  const auto isRoot = [](const fs::path& part) {
    return text::EqualsIgnoreCase(files::PathText(part), startup::kScratchRoot);
  };
  return std::any_of(folder.begin(), folder.end(), isRoot) || std::any_of(real.begin(), real.end(), isRoot);
}

bool MayReplace(Shell& shell, const fs::path& folder) {
  std::error_code ignored;
  const fs::file_status status = fs::status(folder, ignored);
  if (!fs::exists(status)) return true;
  if (!fs::is_directory(status)) {
    shell.Show("Unter diesem Namen gibt es schon eine Datei:\r\n" + files::PathText(folder), MessageIcon::kExclamation);
    return false;
  }
  const std::string question =
      "\r\nEin Projekt:" + text::EnsureBackslash(files::PathText(folder)) + "existiert schon\r\nÜberschreiben ?";
  return shell.Show(question, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes;
}

/// The index on screen is the one in `folder` from now on.
void MoveTo(Shell& shell, const fs::path& folder) {
  startup::AppGlobals& globals = shell.Globals();
  globals.TempFolder = folder;
  globals.CodeDb.Open(codedb::DatabasePath(folder));
  const int modules = shell.projectModel->Tree().moduleCount;
  if (modules == 0) return;
  const int current = shell.views.Current();
  const std::size_t start = shell.views.View(current).SelStart();
  const std::size_t length = shell.views.View(current).SelLength();
  const UpdateLock lock(*shell.rtbHaupt);
  shell.rtbHaupt->Forget();
  shell.views.Load(folder, modules);
  shell.whereabouts.texts.Load(folder, modules);
  shell.views.SetCurrent(current);
  navigation::CodeView& view = shell.views.View(current);
  view.Select(start, length);
  shell.rtbHaupt->ShowView(current, view, shell.views.Runs(current));
}

}  // namespace

bool SaveProject(Shell& shell) {
  const fs::path path = ChooseProjectPath(shell);
  if (path.empty()) return false;
  const std::string name = AskProjectName(shell);
  if (name.empty()) return false;
  const fs::path folder = path / files::PathFromText(name);
  if (IsInScratchRoot(folder)) {
    shell.Show("Im Ordner \"" + std::string(startup::kScratchRoot) +
                   "\" räumt das Programm selbst auf.\r\nBitte wählen Sie einen anderen Projektpfad.",
               MessageIcon::kExclamation);
    return false;
  }
  if (!MayReplace(shell, folder)) return false;

  startup::AppGlobals& globals = shell.Globals();
  const fs::path source = globals.TempFolder;
  std::error_code ignored;
  fs::path left;
  if (!fs::equivalent(source, folder, ignored)) {
    const Working working(shell);
    globals.CodeDb.Close();
    try {
      left = ReplaceProjectFolder(source, folder);
    } catch (...) {
      globals.CodeDb.Open(codedb::DatabasePath(source));
      throw;
    }
    MoveTo(shell, folder);
    if (source == globals.RunTempFolder) codedb::DeleteScratchFiles(source);
  }
  AddRecentProject(shell, folder);
  shell.SetCaption(QStringLiteral(" Projekt: ") + FromUtf8(name));
  if (!left.empty()) {
    shell.Show("Das Projekt ist gespeichert. Was vom alten nicht übernommen werden konnte, liegt in\r\n" +
                   files::PathText(left),
               MessageIcon::kExclamation);
  }
  return true;
}

}  // namespace quillmate::ui
