#include "read_files.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>

#include "messages.h"

namespace quillmate::cli {
namespace {

files::IdentitySet& TheFiles() {
  static files::IdentitySet files;
  return files;
}

/// "M", a number, ".txt".
bool IsModuleText(std::string_view name) {
  if (!name.starts_with("M") || !name.ends_with(".txt")) return false;
  name = name.substr(1, name.size() - 5);
  return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

void NoteRead(const std::filesystem::path& path) { TheFiles().Add(path); }

void NoteProjectRead(const std::filesystem::path& folder) {
  std::error_code ignored;
  for (const files::FolderEntry& entry : files::FolderEntries(folder, ignored)) {
    const std::string name = files::PathText(entry.path.filename());
    const bool own = name == codedb::kDatabaseFile || name == codedb::kFactsFile || name == codedb::kNotesFile;
    if (own || IsModuleText(name)) NoteRead(entry.path);
  }
}

void CheckNotRead(const std::string& output, const std::vector<std::filesystem::path>& replaced) {
  if (std::ranges::none_of(replaced, [](const auto& path) { return TheFiles().Contains(path); })) return;
  throw UsageError("Die Ausgabe " + output + " gehört zur Eingabe");
}

}  // namespace quillmate::cli
