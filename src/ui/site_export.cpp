#include <filesystem>
#include <span>
#include <string>
#include <utility>

#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "exports.h"
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

output::SiteProject Exports::ReadSite(const symbols::ReferenceIndex& understanding,
                                      std::span<const symbols::ModulePlaces> places) {
  output::SiteProject project;
  project.title = session_.Name();
  project.indexFolder = session_.Files();
  project.modules = session_.Index().ReadIndex();
  project.understanding = &understanding;
  project.places = places;
  if (notes_) project.notes = notes_();
  return project;
}

void Exports::WriteDocumentation(const project::Understanding* known) {
  const QString chosen = interaction_.Desktop().ChooseFolder(
      QStringLiteral("Bitte Ordner für die HTML-Dokumentation auswählen"), FromUtf8(globals_.LastProjectFolder));
  if (chosen.isEmpty()) return;
  const fs::path target = TargetIn(ToPath(chosen), session_.Name());
  {
    const Working working(interaction_);
    interaction_.ShowProgress("Erzeuge HTML-Dokumentation");
    output::SiteFolder folder(target, false);
    symbols::ProjectSources loaded;
    symbols::ReferenceIndex made;
    if (known == nullptr) {
      loaded = symbols::LoadSources(session_.Index(), session_.Files(), symbols::HostOfProgram(globals_.HostName));
      made = symbols::ReferenceIndex::Build(std::move(loaded.sources));
    }
    const output::SiteProject project = known == nullptr ? ReadSite(made, loaded.places) : SiteOf(*known);
    output::WriteSite(project, settings::LookOf(globals_.Options), folder.Path(),
                      [this](std::size_t done, std::size_t total) {
                        interaction_.ShowProgress("HTML-Dokumentation: Modul " + std::to_string(done) + " von " +
                                                  std::to_string(total));
                      });
    readFiles_.Check(folder.Replaced());
    folder.Commit();
  }
  const fs::path start = target / "index.html";
  if (!interaction_.Desktop().OpenInBrowser(FromPath(start))) {
    interaction_.Show("Die Dokumentation steht in\r\n" + files::PathText(start), MessageIcon::kInformation);
  }
}

}  // namespace quillmate::ui
