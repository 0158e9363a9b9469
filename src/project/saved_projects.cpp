#include <algorithm>
#include <iterator>
#include <utility>

#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>
#include <quillmate/project/saved_projects.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/operations.h>

namespace quillmate::project {
namespace {

using Folders = std::vector<std::string>;

bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(files::PathFromText(path), ignored);
}

}  // namespace

bool IsProjectFolder(const std::filesystem::path& folder) {
  return codedb::LookAtFolder(folder) == codedb::FolderState::kProject;
}

std::string ProjectNameOf(const std::string& folder) {
  const std::filesystem::path path = files::PathFromText(folder);
  return files::PathText(path.has_filename() ? path.filename() : path.parent_path().filename());
}

Folders LoadRecent(const settings::SettingsStore& store) {
  Folders folders;
  for (const std::string& key : store.SettingKeys(settings::kRecentSection)) {
    if (folders.size() < kRecentCount) folders.push_back(store.ReadSetting(settings::kRecentSection, key));
  }
  return folders;
}

Folders AddRecent(settings::SettingsStore& store, const std::filesystem::path& folder) {
  Folders old = LoadRecent(store);
  if (old.size() == kRecentCount) old.pop_back();
  store.RemoveSettingSection(settings::kRecentSection);
  Folders folders = {text::EnsureBackslash(files::PathText(folder))};
  std::copy_if(old.begin(), old.end(), std::back_inserter(folders), IsFolder);
  for (std::size_t position = 0; position < folders.size(); ++position) {
    store.WriteSetting(settings::kRecentSection, "F" + std::to_string(position), folders[position]);
  }
  return folders;
}

}  // namespace quillmate::project
