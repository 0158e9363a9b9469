#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <quillmate/settings/settings_store.h>
#include <quillmate/startup/app_globals.h>

/// The order of the start and of the end of a run.
namespace quillmate::startup {

inline constexpr std::string_view kScratchRoot = "TempDateien";

/// Where the program lives and keeps what it writes.
struct ProgramPlaces {
  /// Folder that holds "TempDateien" and takes the HTML preview.
  std::filesystem::path programFolder;
  std::filesystem::path templateFile;
};

/// The executable's folder when the template lies there or can be written there; else the data folder of the
/// installation for the template and the user's data folder for the rest.
ProgramPlaces FindProgramPlaces(const std::filesystem::path& executableFolder);

/// True when the whole command line is "/a", in any case.
bool IsMiniWindowCommand(std::string_view commandLine) noexcept;

/// First part of the start, before the window: host, titles, defaults, scratch root, last project folder.
void BeginStart(AppGlobals& globals, int selector, const ProgramPlaces& places, const settings::SettingsStore& store);

/// Holds the mark that an instance of the program runs from this program folder, until it is destroyed or the process
/// ends, however it ends.
class InstanceMark {
 public:
  explicit InstanceMark(const std::filesystem::path& scratchRoot);
  ~InstanceMark();
  InstanceMark(const InstanceMark&) = delete;
  InstanceMark& operator=(const InstanceMark&) = delete;
  /// True when no other instance was running when the mark was set.
  bool IsAlone() const noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Removes what crashed runs left below the scratch root: its files and its sub-folders with their files. Follows no
/// symbolic link, touches nothing whose path lacks "TempDateien". Errors are ignored item by item.
void CleanScratchRoot(const std::filesystem::path& scratchRoot) noexcept;

/// Second part of the start, while the main window loads: cleans the root when alone, loads the options, makes this
/// run's scratch folder ("T_" and a number from 1 to 300000).
void MakeRunFolder(AppGlobals& globals, bool alone, const settings::SettingsStore& store);

/// End of the run: closes the database and removes the run's scratch folder. Errors are ignored.
void EndRun(AppGlobals& globals) noexcept;

/// "&Aktualisieren " + host + " VBA Projekte", and the toolbar's tooltip with "(F5)".
std::string RefreshCaption(std::string_view hostName);
std::string RefreshTooltip(std::string_view hostName);

}  // namespace quillmate::startup
