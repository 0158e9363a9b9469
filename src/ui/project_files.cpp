#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "project_commands.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// True when the folder would be swept away with what crashed runs leave behind.
bool IsInScratchRoot(const fs::path& folder) {
  std::error_code failed;
  const fs::path real = files::RealPath(folder, failed);
  const auto isRoot = [](const fs::path& part) {
    return text::EqualsIgnoreCase(files::PathText(part), startup::kScratchRoot);
  };
  return std::any_of(folder.begin(), folder.end(), isRoot) || std::any_of(real.begin(), real.end(), isRoot);
}

}  // namespace

/// The folder that gets the project's folder; empty when the user gives none.
fs::path ProjectCommands::ChooseProjectPath() {
  fs::path standard = files::PathFromText(globals_.LastProjectFolder);
  std::error_code ignored;
  if (globals_.Options.stapro && fs::is_directory(standard, ignored)) return standard;
  return ToPath(interaction_.Desktop().ChooseFolder(QStringLiteral("Bitte Projektpfad auswählen"), FromPath(standard)));
}

std::string ProjectCommands::AskProjectName() {
  const std::optional<QString> name =
      interaction_.Desktop().AskText(QStringLiteral("Projektname"), QStringLiteral("Bitte Projektnamen angeben"), {});
  return files::CleanName(std::string(text::Trim(ToUtf8(name.value_or(QString())))));
}

bool ProjectCommands::MayReplace(const fs::path& folder) {
  switch (codedb::LookAtFolder(folder)) {
    case codedb::FolderState::kMissing:
      return true;
    case codedb::FolderState::kNoFolder:
      interaction_.Show("Unter diesem Namen gibt es schon eine Datei:\r\n" + files::PathText(folder),
                        MessageIcon::kExclamation);
      return false;
    case codedb::FolderState::kOther:
      interaction_.Show("Dieser Ordner ist kein Projekt und nicht leer:\r\n" + files::PathText(folder) +
                            "\r\nBitte wählen Sie einen anderen Namen oder Projektpfad.",
                        MessageIcon::kExclamation);
      return false;
    default:
      break;
  }
  const std::string question =
      "\r\nEin Projekt:" + text::EnsureBackslash(files::PathText(folder)) + "existiert schon\r\nÜberschreiben ?";
  return interaction_.Show(question, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes;
}

/// Puts a copy of the project into the folder.
void ProjectCommands::WriteProject(const fs::path& source, const fs::path& folder) {
  fs::create_directories(folder.parent_path());
  codedb::ProjectReplacement project(folder);
  codedb::CopyAllFiles(source, project.Path());
  readFiles_.Check(project.Replaced());
  project.Commit();
}

bool ProjectCommands::SaveProject() {
  const fs::path path = ChooseProjectPath();
  if (path.empty()) return false;
  const std::string name = AskProjectName();
  if (name.empty()) return false;
  const fs::path folder = path / files::PathFromText(name);
  if (IsInScratchRoot(folder)) {
    interaction_.Show("Im Ordner „" + std::string(startup::kScratchRoot) +
                          "“ räumt das Programm selbst auf.\r\nBitte wählen Sie einen anderen Projektpfad.",
                      MessageIcon::kExclamation);
    return false;
  }
  if (!MayReplace(folder)) return false;

  const fs::path source = session_.Files();
  emit AboutToCopy();
  std::error_code ignored;
  if (!fs::equivalent(source, folder, ignored)) {
    const Working working(interaction_);
    globals_.CodeDb.CloseCodeDatabase();
    try {
      WriteProject(source, folder);
    } catch (...) {
      globals_.CodeDb.OpenCodeDatabase(source);
      throw;
    }
  }
  session_.MoveTo(folder, name);
  if (source == globals_.RunTempFolder) codedb::DeleteAllFiles(source);
  AddRecentProject(folder);
  return true;
}

}  // namespace quillmate::ui
