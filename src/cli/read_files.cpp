#include "read_files.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>

#include "messages.h"

namespace quillmate::cli {
namespace {

/// What was read; which files the paths name is found out when it matters.
struct FilesRead {
  std::vector<std::filesystem::path::string_type> paths;
  std::set<files::FileIdentity> known;

  bool Contain(const std::filesystem::path& path) {
    const auto identity = files::IdentityOf(path);
    if (!identity) return false;
    for (const auto& read : std::exchange(paths, {})) {
      if (const auto readIdentity = files::IdentityOf(read)) known.insert(*readIdentity);
    }
    return known.contains(*identity);
  }
};

FilesRead& TheFiles() {
  static FilesRead files;
  return files;
}

/// "M", a number, ".txt".
bool IsModuleText(std::string_view name) {
  if (!name.starts_with("M") || !name.ends_with(".txt")) return false;
  name = name.substr(1, name.size() - 5);
  return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

void NoteRead(const std::filesystem::path& path) { TheFiles().paths.push_back(path.native()); }

void NoteProjectRead(const std::filesystem::path& folder) {
  std::error_code ignored;
  for (const files::FolderEntry& entry : files::FolderEntries(folder, ignored)) {
    const std::string name = files::PathText(entry.path.filename());
    const bool own = name == codedb::kDatabaseFile || name == codedb::kFactsFile || name == codedb::kNotesFile;
    if (own || IsModuleText(name)) NoteRead(entry.path);
  }
}

void CheckNotRead(const std::string& output, const std::vector<std::filesystem::path>& replaced) {
  if (std::ranges::none_of(replaced, [](const auto& path) { return TheFiles().Contain(path); })) return;
  throw UsageError("Die Ausgabe " + output + " gehört zur Eingabe");
}

}  // namespace quillmate::cli
