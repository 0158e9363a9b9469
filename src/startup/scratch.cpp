#include <optional>
#include <random>
#include <vector>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/startup/session.h>

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPrivatePrefix = "quillmate_";
constexpr int kLastRunNumber = 300000;
/// Draws of a run number; all of them taken means that nearly all numbers are.
constexpr int kMostDraws = 2000;

bool IsScratchPath(const fs::path& path) {
  return path.native().find(fs::path(kScratchRoot).native()) != fs::path::string_type::npos;
}

/// A folder itself, no link to one.
bool IsRealFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored) && !files::IsLink(path);
}

/// The folder with its files; one with sub-folders stays.
void RemoveScratchFolder(const fs::path& folder) {
  if (!IsRealFolder(folder) || !IsScratchPath(folder)) return;
  codedb::DeleteScratchFiles(folder);
  std::error_code ignored;
  fs::remove(folder, ignored);
}

void RemoveScratchFile(const fs::path& file) {
  std::error_code ignored;
  if (file.filename() != kInstanceFile && IsScratchPath(file)) files::RemovePath(file, ignored);
}

/// A new folder `prefix` + random number; nothing when none can be made. Making it is what finds the name free, so that
/// two runs never share one.
std::optional<fs::path> MakeNumberedFolder(const fs::path& parent, const std::string& prefix) {
  std::random_device seed;
  std::uniform_int_distribution<int> number(1, kLastRunNumber);
  for (int draw = 0; draw < kMostDraws; ++draw) {
    const fs::path candidate = parent / (prefix + std::to_string(number(seed)));
    std::error_code ignored;
    if (fs::create_directory(candidate, ignored)) return candidate;
    const bool taken = fs::exists(fs::symlink_status(candidate, ignored));
    if (!taken) break;
  }
  return std::nullopt;
}

/// A scratch folder where other users can't reach in: "TempDateien" in a private folder below the system's temporary
/// one.
std::optional<fs::path> MakePrivateFolder() {
  std::error_code error;
  const fs::path temporary = fs::temp_directory_path(error);
  if (error) return std::nullopt;
  const std::optional<fs::path> parent = MakeNumberedFolder(temporary, kPrivatePrefix);
  if (!parent) return std::nullopt;
  fs::permissions(*parent, fs::perms::owner_all, error);
  const fs::path folder = *parent / kScratchRoot;
  return fs::create_directory(folder, error) ? std::optional(folder) : std::nullopt;
}

/// The run's folder, and the private one around it.
void RemoveRunFolder(const fs::path& folder) {
  RemoveScratchFolder(folder);
  std::error_code ignored;
  if (folder.filename() == kScratchRoot) fs::remove(folder.parent_path(), ignored);
}

}  // namespace

void CleanScratchRoot(const fs::path& scratchRoot) noexcept try {
  if (!IsRealFolder(scratchRoot)) return;
  std::error_code ignored;
  const std::vector<files::FolderEntry> entries = files::FolderEntries(scratchRoot, ignored);
  for (const files::FolderEntry& entry : entries) {
    if (!IsRealFolder(entry.path)) RemoveScratchFile(entry.path);
  }
  for (const files::FolderEntry& entry : entries) RemoveScratchFolder(entry.path);
} catch (...) {
  // What can't be listed stays for the next lone start.
}

void MakeRunFolder(AppGlobals& globals, InstanceMark& mark, const settings::SettingsStore& store) {
  if (mark.IsAlone()) CleanScratchRoot(globals.TempFolder);
  mark.AdmitOthers();
  settings::LoadOptions(store, globals.Options);
  EnsureRunFolder(globals);
}

void EnsureRunFolder(AppGlobals& globals) {
  if (IsRealFolder(globals.RunTempFolder)) return;
  const fs::path root = globals.ProgramFolder / kScratchRoot;
  std::error_code ignored;
  fs::create_directories(root, ignored);
  std::optional<fs::path> folder = MakeNumberedFolder(root, "T_");
  if (!folder) folder = MakePrivateFolder();
  if (folder) globals.TempFolder = globals.RunTempFolder = *folder;
}

void EndRun(AppGlobals& globals) noexcept try {
  globals.CodeDb.CloseCodeDatabase();
  globals.TempFolder = globals.RunTempFolder;
  RemoveRunFolder(globals.TempFolder);
} catch (...) {
  // The next lone start removes what is left.
}

}  // namespace quillmate::startup
