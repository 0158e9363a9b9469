#include <optional>
#include <random>
#include <vector>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/startup/session.h>

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

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
  codedb::DeleteAllFiles(folder);
  std::error_code ignored;
  fs::remove(folder, ignored);
}

void RemoveScratchFile(const fs::path& file) {
  std::error_code ignored;
  if (file.filename() != kInstanceFile && IsScratchPath(file)) files::RemovePath(file, ignored);
}

/// A new folder "T_" + random number for this user alone; nothing when none can be made. Making it is what finds the
/// name free, so that two runs never share one.
std::optional<fs::path> MakeNumberedFolder(const fs::path& parent) {
  std::random_device seed;
  std::uniform_int_distribution<int> number(1, kLastRunNumber);
  for (int draw = 0; draw < kMostDraws; ++draw) {
    const fs::path candidate = parent / ("T_" + std::to_string(number(seed)));
    const std::error_code error = files::MakePrivateFolder(candidate);
    if (!error) return candidate;
    if (error != std::errc::file_exists) break;
  }
  return std::nullopt;
}

/// "TempDateien" in a folder below the system's temporary one where other users can't reach in.
std::optional<fs::path> MakeFolderElsewhere(AppGlobals& globals) try {
  globals.scratchElsewhere =
      std::make_unique<files::WorkFolder>(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate);
  const fs::path folder = globals.scratchElsewhere->Path() / kScratchRoot;
  return files::MakePrivateFolder(folder) ? std::nullopt : std::optional(folder);
} catch (const files::Failure&) {
  return std::nullopt;
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
  // Where an earlier run may have had to go.
  files::MendFolder(files::TemporaryFolder());
  EnsureRunFolder(globals);
}

void EnsureRunFolder(AppGlobals& globals) {
  if (IsRealFolder(globals.RunTempFolder)) return;
  const fs::path root = globals.ProgramFolder / kScratchRoot;
  std::error_code ignored;
  fs::create_directories(root, ignored);
  std::optional<fs::path> folder = MakeNumberedFolder(root);
  if (!folder) folder = MakeFolderElsewhere(globals);
  if (folder) globals.TempFolder = globals.RunTempFolder = *folder;
}

void EndRun(AppGlobals& globals) noexcept try {
  globals.CodeDb.CloseCodeDatabase();
  globals.TempFolder = globals.RunTempFolder;
  RemoveScratchFolder(globals.TempFolder);
  globals.scratchElsewhere.reset();
} catch (...) {
  // The next lone start removes what is left.
}

}  // namespace quillmate::startup
