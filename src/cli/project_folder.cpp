#include "project_folder.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/folder_swap.h>
#include <quillmate/files/paths.h>

#include "messages.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& path, std::string_view what) {
  throw CommandFailure(files::PathText(path) + ": " + std::string(what));
}

/// Absolute, symbolic links resolved, without a separator at its end.
fs::path ResolveTarget(const std::string& target) {
  std::error_code error;
  fs::path path = files::RealPath(files::PathFromText(target), error);
  if (error) {
    throw CommandFailure(target + ": " + SystemReason(error));
  }
  return path.has_filename() ? path : path.parent_path();
}

/// A new hidden folder beside the target. Its name holds "TempDateien", without which the program deletes nothing.
fs::path MakeFolderBeside(const fs::path& target) {
  const std::string stem = ".Quillmate-TempDateien-" + std::to_string(ProcessNumber()) + "-";
  for (int number = 1;; ++number) {
    fs::path folder = target.parent_path() / (stem + std::to_string(number));
    std::error_code error;
    if (fs::create_directory(folder, error)) {
      return folder;
    }
    if (error) {
      Fail(target, "Der Ordner kann nicht angelegt werden: " + SystemReason(error));
    }
  }
}

/// Where the old folder waits while the new one takes its place.
fs::path Aside(fs::path fresh) { return fresh += ".alt"; }

bool BelongsToOldProject(const files::FolderEntry& entry) {
  const bool isFolder = !entry.isLink && entry.isFolder;
  return !isFolder && IsProjectFile(entry.path.filename());
}

std::vector<files::FolderEntry> EntriesOf(const fs::path& folder) {
  std::error_code error;
  std::vector<files::FolderEntry> entries = files::FolderEntries(folder, error);
  if (error) {
    throw fs::filesystem_error("list", folder, error);
  }
  return entries;
}

void Remove(const fs::path& path) {
  std::error_code error;
  files::RemovePath(path, error);
  if (error) {
    throw fs::filesystem_error("remove", path, error);
  }
}

/// Moves all that is not the old project's own from its folder to the new one, then removes the rest with the folder.
void ClearOldFolder(const fs::path& old, const fs::path& target) try {
  std::vector<fs::path> own;
  std::vector<fs::path> others;
  for (const files::FolderEntry& entry : EntriesOf(old)) {
    (BelongsToOldProject(entry) ? own : others).push_back(entry.path);
  }
  for (const fs::path& path : others) {
    files::RenamePath(path, target / path.filename());
  }
  for (const fs::path& path : own) {
    Remove(path);
  }
  Remove(old);
} catch (const fs::filesystem_error& error) {
  Fail(target, "Das neue Projekt ist geschrieben, in " + files::PathText(old) +
                   " liegen noch Dateien von vorher: " + SystemReason(error.code()));
}

bool IsNumberBetween(std::string_view name, std::string_view before, std::string_view behind) {
  if (name.size() <= before.size() + behind.size() || !name.starts_with(before) || !name.ends_with(behind)) {
    return false;
  }
  name.remove_prefix(before.size());
  name.remove_suffix(behind.size());
  return std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

bool IsProjectFile(const fs::path& name) {
  constexpr std::array<std::string_view, 4> kEngineSuffixes{"", "-journal", "-wal", "-shm"};
  const std::string text = files::PathText(name);
  const auto isOf = [&](std::string_view database) {
    return std::ranges::any_of(kEngineSuffixes,
                               [&](std::string_view s) { return text == std::string(database) + std::string(s); });
  };
  return isOf(codedb::kDatabaseFile) || isOf(codedb::kFactsFile) || IsNumberBetween(text, "M", ".txt");
}

NewProjectFolder::NewProjectFolder(const std::string& target, bool overwrite) : target_(ResolveTarget(target)) {
  CheckTarget(overwrite);
  replaces_ = fs::exists(target_);
  folder_ = std::make_unique<Leftover>([this] { return MakeFolderBeside(target_); });
}

void NewProjectFolder::CheckTarget(bool overwrite) const {
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (!fs::exists(status)) {
    return;
  }
  if (!fs::is_directory(status)) {
    Fail(target_, "Das ist kein Ordner");
  }
  if (!overwrite) {
    Fail(target_, "Der Ordner existiert schon; --force überschreibt ein Projekt");
  }
  const bool isProject = fs::exists(codedb::CodeDbPath(target_), error);
  if (!isProject && !EntriesOf(target_).empty()) {
    Fail(target_, "Der Ordner ist kein Projekt und nicht leer; er wird nicht überschrieben");
  }
}

void NewProjectFolder::Finish() try {
  if (replaces_) {
    Replace();
  } else {
    PutInPlace();
  }
} catch (const fs::filesystem_error& error) {
  Fail(target_, "Das Projekt kann nicht an seinen Platz gebracht werden: " + SystemReason(error.code()));
}

void NewProjectFolder::PutInPlace() {
  const RunLock lock;
  files::RenamePath(folder_->Path(), target_);
  folder_->Release(lock);
}

void NewProjectFolder::Replace() {
  fs::permissions(folder_->Path(), fs::status(target_).permissions());
  const RunLock lock;
  const fs::path old = files::SwapFolders(folder_->Path(), target_, Aside(folder_->Path()));
  folder_->Release(lock);
  ClearOldFolder(old, target_);
}

}  // namespace quillmate::cli
