#include <algorithm>
#include <string>
#include <string_view>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/codedb/records.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/work_folder.h>

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

/// The texts of the modules that the index lists. Throws files::Failure.
std::vector<fs::path> ModuleTexts(CodeDatabase& database) {
  std::vector<fs::path> names;
  for (const ModuleRecord& module : database.Modules()) {
    names.push_back(ModuleTextPath({}, module.number));
  }
  return names;
}

bool IsFile(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

void CheckPlace(const fs::path& target) {
  switch (LookAtFolder(target)) {
    case FolderState::kNoFolder:
      throw files::Failure(files::FileReason::kNoFolder, target);
    case FolderState::kOther:
      throw files::Failure(DatabaseReason::kOccupied, target);
    default:
      return;
  }
}

}  // namespace

FolderState LookAtFolder(const fs::path& folder) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (!fs::exists(status)) return FolderState::kMissing;
  if (!fs::is_directory(status)) return FolderState::kNoFolder;
  files::MendFolder(folder);
  if (IsFile(CodeDbPath(folder))) return FolderState::kProject;
  const bool isEmpty = files::FolderEntries(folder, error).empty() && !error;
  return isEmpty ? FolderState::kEmpty : FolderState::kOther;
}

std::vector<fs::path> DatabaseFiles() {
  std::vector<fs::path> names;
  for (const std::string_view file : {kDatabaseFile, kFactsFile}) {
    for (const std::string_view companion : {"", "-journal", "-wal", "-shm"}) {
      names.push_back(fs::path(file) += companion);
    }
  }
  return names;
}

std::vector<fs::path> ProjectFiles(const fs::path& folder) {
  std::vector<fs::path> names = DatabaseFiles();
  if (!IsFile(CodeDbPath(folder))) return names;
  try {
    CodeDatabase database;
    database.OpenModules(folder);
    const std::vector<fs::path> texts = ModuleTexts(database);
    names.insert(names.end(), texts.begin(), texts.end());
  } catch (const files::Failure&) {
    // What it listed nobody knows.
  }
  return names;
}

void CopyAllFiles(const fs::path& from, const fs::path& to) {
  std::vector<fs::path> names;
  try {
    CodeDatabase database;
    database.OpenCodeDatabase(from);
    names = ModuleTexts(database);
  } catch (const files::Failure& error) {
    throw BrokenProject(from, error);
  }
  names.emplace_back(kDatabaseFile);
  if (IsFile(from / kFactsFile)) names.emplace_back(kFactsFile);
  for (const fs::path& name : names) files::WriteWholeFile(to / name, files::ReadWholeFile(from / name));
}

ProjectReplacement::ProjectReplacement(const fs::path& target) {
  CheckPlace(target);
  folder_ = std::make_unique<files::FolderReplacement>(target);
}

const std::vector<fs::path>& ProjectReplacement::OldNames() {
  if (!oldNames_) oldNames_ = ProjectFiles(folder_->Target());
  return *oldNames_;
}

std::vector<fs::path> ProjectReplacement::Replaced() {
  std::vector<fs::path> names = folder_->Names();
  names.insert(names.end(), OldNames().begin(), OldNames().end());
  std::ranges::sort(names);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  for (fs::path& name : names) name = folder_->Target() / name;
  return names;
}

void ProjectReplacement::Commit() try { folder_->Commit(OldNames()); } catch (const files::Failure& error) {
  if (error.Code() != std::errc::file_exists) throw;
  throw files::Failure(DatabaseReason::kForeignFile, error.Path());
}

}  // namespace quillmate::codedb
