#pragma once

#include <QObject>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <quillmate/host/project_reader.h>
#include <quillmate/ui/services.h>

#include "interaction.h"
#include "project_session.h"
#include "read_files.h"
#include "source_list.h"

namespace quillmate::ui {

/// The commands that lead to another project, or away from one: reading, opening, saving, starting anew.
class ProjectCommands : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it.
  ProjectCommands(const Services& services, Interaction& interaction, ProjectSession& session, SourceList& sources,
                  const ReadFiles& readFiles);

  // Datei
  void OpenSavedProject();
  /// The project at a 0-based position of the list of recent projects.
  void OpenRecent(std::size_t position);
  void StartAnew();
  /// Asks for folder and name and saves the loaded project there; the project folder is the current one from then on.
  /// False when the user gave up; throws when the files can't be copied, and the project stays where it was.
  bool SaveProject();
  void AddFiles();
  void AddFolder();
  /// Reads the project that comes with the program, without adding it to the sources.
  void ReadSample();
  /// Reads a single file, without adding it to the sources.
  void ReadFile(const QString& file);
  /// A folder that holds a saved project is opened, everything else becomes a source.
  void TakeDropped(const QStringList& files);
  /// Shows the stored list of recent projects.
  void LoadRecentMenu();

  // Bearbeiten, Extras
  void ReadCode();
  void ReadVbFiles();

  // Ansicht
  void RefreshProjects();

  /// When another program has written the folder of the project on screen anew: says so, and loads it again if the user
  /// wants that. False when the project on screen is still the one before.
  bool OfferReload();

  /// Whether a single document is read as soon as it is added.
  void ReadDocumentsAtOnce(std::function<bool()> wanted) { readsAtOnce_ = std::move(wanted); }
  /// Asks whether an unsaved project is to be saved first. False when the command must not go on.
  bool ConfirmUnsaved();

 signals:
  /// The project folders opened last, the newest first. UTF-8.
  void RecentChanged(const std::vector<std::string>& folders);
  /// The project's files are copied and then perhaps removed: nobody may be reading them any more.
  void AboutToCopy();

 private:
  using Reader = std::function<host::ReadReport(const host::ReadRequest&)>;

  /// Shows the project that is saved in a folder; it is the current one from then on. A folder that is no project is
  /// told, a damaged one as well; what was on screen stays then.
  void OpenProjectFolder(const std::filesystem::path& folder);
  /// The same for an index that is there. False after telling that it can't be used.
  bool ReloadProject(const std::filesystem::path& folder, const std::string& title, bool isSaved);
  std::string TooManyModulesText() const;
  /// Back to the state without a project: the run's scratch folder is emptied and current again.
  void ResetProject();
  /// The project on screen gives way, after a question when it is not saved. False when the user wants to keep it.
  bool LeaveProject();
  void AddSources(const QStringList& paths);
  void AddRecentProject(const std::filesystem::path& folder);

  host::ReadRequest RequestOf();
  void ReadProject(const Reader& read);
  void TellFailure(const host::ReadReport& report);

  std::filesystem::path ChooseProjectPath();
  std::string AskProjectName();
  bool MayReplace(const std::filesystem::path& folder);
  void WriteProject(const std::filesystem::path& source, const std::filesystem::path& folder);

  startup::AppGlobals& globals_;
  settings::SettingsStore& settings_;
  host::JoinedHost& host_;
  Interaction& interaction_;
  ProjectSession& session_;
  SourceList& sources_;
  const ReadFiles& readFiles_;
  std::vector<std::string> recent_;
  std::function<bool()> readsAtOnce_ = [] { return false; };
};

}  // namespace quillmate::ui
