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
  /// Folder that holds "TempDateien" and takes the HTML preview. It need not exist yet.
  std::filesystem::path programFolder;
  /// mask_Quillmate.mdb; the help file is beside it.
  std::filesystem::path templateFile;
};

/// A portable copy (template beside the executable, or nothing installed, and the folder can be written) keeps
/// everything in the executable's folder. An installed program has its template in ../share/quillmate and writes to
/// the user's data folder (~/.local/share/quillmate, on Windows AppData\Local\quillmate).
ProgramPlaces FindProgramPlaces(const std::filesystem::path& executableFolder);

/// True when the whole command line is "/a", regardless of case.
bool IsMiniWindowCommand(std::string_view commandLine) noexcept;

/// First part of the start, before the window: host, titles, defaults, scratch root, last project folder. A scratch
/// root that can't be made is no error.
void BeginStart(AppGlobals& globals, int selector, const ProgramPlaces& places, const settings::SettingsStore& store);

/// The file in the scratch root that carries the instances' marks. It stays when the last instance has ended.
inline constexpr std::string_view kInstanceFile = "Quillmate.lock";

/// Holds the mark that an instance of the program runs from this program folder, until it is destroyed or the process
/// ends, however it ends.
///
/// Run folders below the scratch root are only made under the mark, and the root is only cleaned while no other
/// process has one: an instance that finds itself alone keeps all others waiting in their constructors until it calls
/// `AdmitOthers`. Whoever was admitted is not alone, and nobody is as long as any of them runs.
class InstanceMark {
 public:
  /// Waits while another instance cleans the root. Never fails: where no mark can be set, nobody is alone.
  explicit InstanceMark(const std::filesystem::path& scratchRoot);
  ~InstanceMark();
  InstanceMark(const InstanceMark&) = delete;
  InstanceMark& operator=(const InstanceMark&) = delete;
  /// True when no other instance was running when the mark was set.
  bool IsAlone() const noexcept;
  /// Ends the time in which the root may be cleaned. Needs to be called once, before the run folder is made.
  void AdmitOthers() noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Removes what crashed runs left below the scratch root: its files (not the instance file) and its sub-folders with
/// their files. Follows no symbolic link, touches nothing whose path lacks "TempDateien". Errors are ignored item by
/// item.
void CleanScratchRoot(const std::filesystem::path& scratchRoot) noexcept;

/// Second part of the start, while the main window loads: cleans the root when the mark is alone and admits the
/// others, loads the options, makes this run's scratch folder ("T_" and a number from 1 to 300000). When the root
/// can't be written, the folder is "TempDateien" in a work folder (files/work_folder.h) below the system's temporary
/// one. Either is for the user alone. When that fails
/// too, `RunTempFolder` stays empty and exports will report their errors.
void MakeRunFolder(AppGlobals& globals, InstanceMark& mark, const settings::SettingsStore& store);

/// Makes another folder for this run when somebody has removed its own; no project may be loaded then.
void EnsureRunFolder(AppGlobals& globals);

/// End of the run: closes the database and removes the run's scratch folder, never that of a saved project. Errors are
/// ignored. The instance mark must outlive it.
void EndRun(AppGlobals& globals) noexcept;

/// "&Aktualisieren " + host + " VBA Projekte", and the toolbar's tooltip with "(F5)".
std::string RefreshCaption(std::string_view hostName);
std::string RefreshTooltip(std::string_view hostName);

}  // namespace quillmate::startup
