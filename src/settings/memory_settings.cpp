#include <map>

#include <quillmate/settings/settings_store.h>

#include "key_names_p.h"

namespace quillmate::settings {
namespace {

class MemoryStore final : public SettingsStore {
 public:
  std::string ReadSetting(std::string_view section, std::string_view key) const override {
    const auto texts = sections_.find(section);
    if (texts == sections_.end()) return {};
    const auto text = texts->second.find(key);
    return text == texts->second.end() ? std::string() : text->second;
  }

  void WriteSetting(std::string_view section, std::string_view key, std::string_view value) override {
    sections_[std::string(section)].insert_or_assign(std::string(key), std::string(value));
  }

  void RemoveSettingSection(std::string_view section) override { sections_.erase(std::string(section)); }

  std::vector<std::string> SettingKeys(std::string_view section) const override {
    std::vector<std::string> keys;
    const auto texts = sections_.find(section);
    if (texts == sections_.end()) return keys;
    for (const auto& [key, text] : texts->second) keys.push_back(key);
    return keys;
  }

 private:
  using Section = std::map<std::string, std::string, KeyOrder>;
  std::map<std::string, Section, std::less<>> sections_;
};

}  // namespace

std::unique_ptr<SettingsStore> MemorySettings() { return std::make_unique<MemoryStore>(); }

}  // namespace quillmate::settings
