#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "exports.h"
#include "project_copy.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// The chosen folder when it is empty or holds an earlier documentation; otherwise a folder of its own below it, so
/// that the pages do not mix with other files.
fs::path TargetIn(const fs::path& chosen, const std::string& title) {
  std::error_code unreadable;
  const bool free = files::FolderEntries(chosen, unreadable).empty() && !(unreadable && fs::exists(chosen));
  if (free || fs::exists(chosen / output::kSiteListFile)) return chosen;
  return chosen / files::PathFromText(files::CleanName(title + " Dokumentation"));
}

}  // namespace

output::SiteProject Exports::SiteOf(const project::Understanding& known) const {
  output::SiteProject project;
  project.title = session_.Name();
  project.understanding = &known.Index();
  project.places = known.Places();
  if (notes_) project.notes = notes_();
  return project;
}

void Exports::WriteDocumentation(std::shared_ptr<const project::Understanding> known) {
  const QString task = QStringLiteral("frmDokumentationFortschritt");
  if (!tasks_.IsFree(task)) return;
  const QString chosen = interaction_.Desktop().ChooseFolder(
      QStringLiteral("Bitte Ordner für die HTML-Dokumentation auswählen"), FromUtf8(globals_.LastProjectFolder));
  if (chosen.isEmpty()) return;
  const fs::path target = TargetIn(ToPath(chosen), session_.Name());
  const auto make = [source = session_.Files(), target, site = SiteOf(*known), known,
                     look = settings::LookOf(globals_.Options), read = readFiles_.Known()](BackgroundJob& job) {
    output::SiteFolder folder(target, false);
    const ProjectCopy copy(source, job);
    output::SiteProject project = site;
    project.indexFolder = copy.Path();
    project.modules = copy.ReadIndex();
    job.Begin("HTML-Dokumentation");
    output::WriteSite(project, look, folder.Path(),
                      [&job](std::size_t done, std::size_t total) { job.Tell(done, total); });
    job.Begin("Lege die Seiten ab");
    read.Check(folder.Replaced());
    folder.Commit();
  };
  tasks_.Start({task, QStringLiteral("HTML-Dokumentation"), make, [this, start = target / "index.html"] {
                  if (interaction_.Desktop().OpenInBrowser(FromPath(start))) return;
                  interaction_.Show("Die Dokumentation liegt in\r\n" + files::PathText(start),
                                    MessageIcon::kInformation);
                }});
}

}  // namespace quillmate::ui
