#include "project_commands.h"

#include <QFileInfo>
#include <algorithm>
#include <exception>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/office/office_file.h>
#include <quillmate/project/reason.h>
#include <quillmate/project/saved_projects.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// The dialog's kinds of files: all that can be a source, Office files, modules and projects, everything.
QString FileFilter() {
  QStringList office;
  for (const std::string_view extension : office::OfficeFileExtensions()) {
    office << QStringLiteral("*.") + FromUtf8(std::string(extension));
  }
  const QString modules = QStringLiteral("*.bas *.cls *.frm *.ctl *.pag *.dob *.dsr *.vbp");
  const QString documents = office.join(u' ') + QStringLiteral(" vbaProject.bin");
  return QStringLiteral(
             "Alle Quellen (%1 %2);;Office-Dateien (%1);;VBA-Module und VB-Projekte (%2);;"
             "Textexporte aus Access (*.txt);;Alle Dateien (*)")
      .arg(documents, modules);
}

/// A project in one file: an Office file or that of a VB project, not a module file or a folder.
bool IsDocument(const QString& path) {
  const std::string extension = ToUtf8(QFileInfo(path).suffix().toLower());
  return QFileInfo(path).isFile() &&
         (extension == "vbp" ||
          std::ranges::find(office::OfficeFileExtensions(), extension) != std::end(office::OfficeFileExtensions()));
}

}  // namespace

ProjectCommands::ProjectCommands(const Services& services, Interaction& interaction, ProjectSession& session,
                                 SourceList& sources, const ReadFiles& readFiles)
    : globals_(services.globals),
      settings_(services.settings),
      host_(services.host),
      interaction_(interaction),
      session_(session),
      sources_(sources),
      readFiles_(readFiles) {}

void ProjectCommands::OpenSavedProject() {
  const QString folder = interaction_.Desktop().ChooseFolder(QStringLiteral("Bitte Projekt auswählen"),
                                                             FromUtf8(globals_.LastProjectFolder));
  if (!folder.isEmpty()) OpenProjectFolder(ToPath(folder));
}

void ProjectCommands::OpenRecent(std::size_t position) {
  if (position < recent_.size()) OpenProjectFolder(files::PathFromText(recent_[position]));
}

void ProjectCommands::OpenProjectFolder(const fs::path& folder) {
  if (!project::IsProjectFolder(folder)) {
    interaction_.Show("Kein Gültiges Projekt", MessageIcon::kExclamation);
    return;
  }
  if (!ConfirmUnsaved()) return;
  AddRecentProject(folder);
  ReloadProject(folder, project::ProjectNameOf(files::PathText(folder)), true);
}

bool ProjectCommands::ReloadProject(const fs::path& folder, const std::string& title, bool isSaved) {
  const Working working(interaction_);
  interaction_.ShowProgress("Lese Projekt");
  try {
    session_.ReloadProject(folder, title, isSaved, globals_.MostViews);
    return true;
  } catch (const files::Failure& failure) {
    const bool isTooLarge = failure.Is(project::ProjectReason::kManyModules);
    const std::string text = isTooLarge ? std::string(failure.what()) + "\r\n" + files::PathText(folder)
                                        : codedb::BrokenProject(folder).what();
    interaction_.Show(text, MessageIcon::kExclamation);
    return false;
  } catch (const std::exception&) {
    interaction_.Show(codedb::BrokenProject(folder).what(), MessageIcon::kExclamation);
    return false;
  }
}

std::string ProjectCommands::TooManyModulesText() const {
  return files::Failure(project::ProjectReason::kManyModules, {}, {std::to_string(globals_.MostViews)}).what();
}

void ProjectCommands::ResetProject() {
  session_.Leave(globals_.RunTempFolder);
  codedb::DeleteAllFiles(globals_.RunTempFolder);
}

bool ProjectCommands::ConfirmUnsaved() {
  if (!session_.IsLoaded() || session_.IsSaved()) return true;
  switch (interaction_.Show("Projekt wurde nicht gespeichert !\r\nProjekt jetzt speichern ?", MessageIcon::kQuestion,
                            Buttons::kYesNoCancel)) {
    case Answer::kYes:
      return SaveProject();
    case Answer::kNo:
      return true;
    default:
      return false;
  }
}

bool ProjectCommands::LeaveProject() {
  if (!session_.IsLoaded()) return true;
  if (!ConfirmUnsaved()) return false;
  ResetProject();
  return true;
}

void ProjectCommands::ReadSample() {
  const fs::path sample = globals_.TemplatePath.parent_path() / "Beispiel" / "Lagerverwaltung";
  std::error_code ignored;
  if (!fs::is_directory(sample, ignored)) {
    interaction_.Show("Das Beispielprojekt ist nicht installiert:\r\n" + files::PathText(sample),
                      MessageIcon::kExclamation);
    return;
  }
  if (LeaveProject() && sources_.TakeForNow(FromPath(sample))) ReadCode();
}

void ProjectCommands::ReadFile(const QString& file) {
  std::error_code ignored;
  if (!fs::is_regular_file(ToPath(file), ignored)) {
    interaction_.Show("Die Datei ist nicht mehr da:\r\n" + ToUtf8(file), MessageIcon::kExclamation);
    return;
  }
  if (LeaveProject() && sources_.TakeAlone(file)) ReadCode();
}

void ProjectCommands::StartAnew() {
  // Without a project it is the button that looks again.
  const bool looksAgain = !session_.IsLoaded();
  if (!ConfirmUnsaved()) return;
  ResetProject();
  sources_.LoadUserSources();
  if (looksAgain) {
    sources_.RefreshKeepingTicks();
  } else {
    sources_.RefreshHostProjects();
  }
}

void ProjectCommands::RefreshProjects() {
  sources_.LoadUserSources();
  sources_.RefreshKeepingTicks();
}

void ProjectCommands::AddFiles() {
  const QStringList files = interaction_.Desktop().ChooseFiles(QStringLiteral("Dateien hinzufügen"),
                                                               FromUtf8(globals_.LastProjectFolder), FileFilter());
  if (!files.isEmpty()) AddSources(files);
}

void ProjectCommands::AddFolder() {
  const QString folder =
      interaction_.Desktop().ChooseFolder(QStringLiteral("Ordner hinzufügen"), FromUtf8(globals_.LastProjectFolder));
  if (!folder.isEmpty()) AddSources({folder});
}

void ProjectCommands::AddSources(const QStringList& paths) {
  if (!LeaveProject()) return;
  sources_.AddSources(paths);
  if (paths.size() == 1 && readsAtOnce_() && IsDocument(paths.front()) && sources_.TickSource(paths.front()))
    ReadCode();
}

void ProjectCommands::TakeDropped(const QStringList& files) {
  const fs::path first = ToPath(files.front());
  if (files.size() == 1 && project::IsProjectFolder(first)) {
    OpenProjectFolder(first);
  } else {
    AddSources(files);
  }
}

void ProjectCommands::LoadRecentMenu() {
  recent_ = project::LoadRecent(settings_);
  emit RecentChanged(recent_);
}

void ProjectCommands::AddRecentProject(const fs::path& folder) {
  recent_ = project::AddRecent(settings_, folder);
  emit RecentChanged(recent_);
}

bool ProjectCommands::OfferReload() {
  if (!session_.WasReplaced()) return false;
  const Answer answer =
      interaction_.Show("Das Projekt wurde inzwischen von einem anderen Programm neu geschrieben:\r\n" +
                            files::PathText(session_.Folder()) + "\r\nNeu laden ?",
                        MessageIcon::kQuestion, Buttons::kYesNo);
  return answer == Answer::kYes && ReloadProject(session_.Folder(), session_.Title(), session_.IsSaved());
}

}  // namespace quillmate::ui
