#include <filesystem>
#include <string>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "project_folder.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

output::SiteJudgement JudgementOf(analysis::UnusedClass unused) {
  switch (unused) {
    case analysis::UnusedClass::kHost:
      return output::SiteJudgement::kHost;
    case analysis::UnusedClass::kText:
      return output::SiteJudgement::kText;
    case analysis::UnusedClass::kCertain:
      break;
  }
  return output::SiteJudgement::kCertain;
}

output::SiteProject ReadProject(Shell& shell) {
  startup::AppGlobals& globals = shell.Globals();
  output::SiteProject project;
  project.title = ToUtf8(shell.ProjectName());
  project.indexFolder = globals.TempFolder;
  project.modules = codedb::ReadIndex(globals.CodeDb);
  for (const analysis::UnusedRoutine& routine : analysis::FindUnusedRoutines(globals.CodeDb, globals.TempFolder)) {
    project.unused.push_back({routine.routineNumber, JudgementOf(routine.unused)});
  }
  return project;
}

/// The chosen folder when it is empty or holds an earlier documentation; otherwise a folder of its own below it, so
/// that the pages do not mix with other files.
fs::path TargetIn(const fs::path& chosen, const std::string& title) {
  std::error_code unreadable;
  const bool free = files::FolderEntries(chosen, unreadable).empty() && !(unreadable && fs::exists(chosen));
  if (free || fs::exists(chosen / output::kSiteListFile)) return chosen;
  return chosen / files::PathFromText(CleanName(title + " Dokumentation"));
}

}  // namespace

void WriteDocumentation(Shell& shell) {
  const QString chosen = shell.around.platform.ChooseFolder(
      QStringLiteral("Bitte Ordner für die HTML-Dokumentation auswählen"), FromUtf8(shell.Globals().LastProjectFolder));
  if (chosen.isEmpty()) return;
  const fs::path target = TargetIn(ToPath(chosen), ToUtf8(shell.ProjectName()));
  {
    const Working working(shell);
    shell.ShowProgress("Erzeuge HTML-Dokumentation");
    output::ExportSite(
        ReadProject(shell), settings::LookOf(shell.Globals().Options), target, false,
        [&shell](std::size_t done, std::size_t total) {
          shell.ShowProgress("HTML-Dokumentation: Modul " + std::to_string(done) + " von " + std::to_string(total));
        });
  }
  const fs::path start = target / "index.html";
  if (!shell.around.platform.OpenInBrowser(FromPath(start))) {
    shell.Show("Die Dokumentation steht in\r\n" + files::PathText(start), MessageIcon::kInformation);
  }
}

}  // namespace quillmate::ui
