#include "saved_project.h"

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>

#include "project_view.h"
#include "qt_text.h"
#include "recent_projects.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// The project that is on screen, to come back to.
struct Before {
  fs::path folder;
  QString title;
};

/// The project on screen is the current one again. Its index was in use a moment ago: that it can't be opened any more
/// is not expected, and reported like any other error.
void ReturnTo(Shell& shell, const Before& before) {
  startup::AppGlobals& globals = shell.Globals();
  globals.TempFolder = before.folder;
  shell.window.setWindowTitle(before.title);
  if (shell.mode != 0) globals.CodeDb.Open(codedb::DatabasePath(before.folder));
}

}  // namespace

bool IsProjectFolder(const fs::path& folder) {
  std::error_code ignored;
  return fs::is_regular_file(codedb::DatabasePath(folder), ignored);
}

void OpenProjectFolder(Shell& shell, const fs::path& folder) {
  if (!IsProjectFolder(folder)) {
    shell.Show("Kein Gültiges Projekt", MessageIcon::kExclamation);
    return;
  }
  startup::AppGlobals& globals = shell.Globals();
  const Before before{globals.TempFolder, shell.window.windowTitle()};
  globals.CodeDb.Close();
  globals.TempFolder = folder;
  AddRecentProject(shell, folder);
  shell.SetCaption(QStringLiteral(" Projekt: ") + FromUtf8(ProjectNameOf(files::PathText(folder))));
  if (!ReloadProject(shell)) ReturnTo(shell, before);
}

}  // namespace quillmate::ui
