#include <charconv>

#include <quillmate/settings/options.h>
#include <quillmate/settings/sources.h>

namespace quillmate::settings {
namespace {

constexpr std::string_view kReadingSection = "lesen";
constexpr std::string_view kExcel4 = "excel4";
constexpr std::string_view kCodePage = "zeichensatz";

}  // namespace

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

ReadingOptions LoadReadingOptions(const SettingsStore& store) {
  ReadingOptions options;
  options.excel4 = store.ReadSetting(kReadingSection, kExcel4) == "-1";
  const std::string number = store.ReadSetting(kReadingSection, kCodePage);
  std::from_chars(number.data(), number.data() + number.size(), options.codePage);
  return options;
}

void SaveReadingOptions(SettingsStore& store, const ReadingOptions& options) {
  store.WriteSetting(kReadingSection, kExcel4, options.excel4 ? "-1" : "0");
  store.WriteSetting(kReadingSection, kCodePage, std::to_string(options.codePage));
}

}  // namespace quillmate::settings
