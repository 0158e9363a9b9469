#include <quillmate/settings/options.h>
#include <quillmate/settings/sources.h>

namespace quillmate::settings {

std::vector<std::string> LoadSources(const SettingsStore& store) {
  std::vector<std::string> paths;
  for (const std::string& key : store.SettingKeys(kSourcesSection)) {
    std::string path = store.ReadSetting(kSourcesSection, key);
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

void SaveSources(SettingsStore& store, const std::vector<std::string>& paths) {
  store.RemoveSettingSection(kSourcesSection);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    store.WriteSetting(kSourcesSection, "Q" + std::to_string(i), paths[i]);
  }
}

}  // namespace quillmate::settings
