#include "recent_projects.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/operations.h>

#include "qt_text.h"
#include "shell.h"
#include "start_page.h"

namespace quillmate::ui {
namespace {

using Folders = std::vector<std::string>;

bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(files::PathFromText(path), ignored);
}

void ShowInMenu(Shell& shell, Folders folders) {
  for (std::size_t position = 0; position < kRecentCount; ++position) {
    const std::string number = std::to_string(position);
    QAction& item = shell.commands->Item(OpenRecentCommand(position));
    item.setVisible(position < folders.size());
    if (position >= folders.size()) continue;
    // A "&" in a name is no access key.
    const QString name = FromUtf8(ProjectNameOf(folders[position])).replace(QLatin1Char('&'), QStringLiteral("&&"));
    item.setText(QLatin1Char('&') + FromUtf8(number) + QStringLiteral(" - ") + name);
    item.setToolTip(FromUtf8(folders[position]));
  }
  shell.startPage->ShowRecent(folders);
  shell.recent = std::move(folders);
}

}  // namespace

Folders LoadRecent(const settings::SettingsStore& store) {
  Folders folders;
  for (const std::string& key : store.SettingKeys(settings::kRecentSection)) {
    if (folders.size() < kRecentCount) folders.push_back(store.ReadSetting(settings::kRecentSection, key));
  }
  return folders;
}

Folders AddRecent(settings::SettingsStore& store, const std::string& folder) {
  Folders old = LoadRecent(store);
  if (old.size() == kRecentCount) old.pop_back();
  store.RemoveSettingSection(settings::kRecentSection);
  Folders folders = {folder};
  std::copy_if(old.begin(), old.end(), std::back_inserter(folders), IsFolder);
  for (std::size_t position = 0; position < folders.size(); ++position) {
    store.WriteSetting(settings::kRecentSection, "F" + std::to_string(position), folders[position]);
  }
  return folders;
}

std::string ProjectNameOf(const std::string& folder) {
  const std::filesystem::path path = files::PathFromText(folder);
  return files::PathText(path.has_filename() ? path.filename() : path.parent_path().filename());
}

void LoadRecentMenu(Shell& shell) { ShowInMenu(shell, LoadRecent(shell.around.settings)); }

void AddRecentProject(Shell& shell, const std::filesystem::path& folder) {
  ShowInMenu(shell, AddRecent(shell.around.settings, text::EnsureBackslash(files::PathText(folder))));
}

}  // namespace quillmate::ui
