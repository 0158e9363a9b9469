#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::settings {

/// The user's settings: texts under (section, key) below an application path. Everything UTF-8. On Windows the
/// registry (HKEY_CURRENT_USER\Software\ + path), elsewhere an ini file below the user's configuration folder.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  /// The stored text; empty when section or key do not exist. Never fails.
  virtual std::string ReadSetting(std::string_view section, std::string_view key) const = 0;
  /// Never reports an error.
  virtual void WriteSetting(std::string_view section, std::string_view key, std::string_view value) = 0;
  virtual void RemoveSettingSection(std::string_view section) = 0;
  /// Keys of a section in the order of their names, numbers by value ("F2" before "F10").
  virtual std::vector<std::string> SettingKeys(std::string_view section) const = 0;
};

/// `settingsRoot` as in `AppGlobals`: two names joined by a backslash.
std::unique_ptr<SettingsStore> OpenSettings(const std::string& settingsRoot);

/// Keeps the values in memory only; for tests and for runs that must not touch the user's settings.
std::unique_ptr<SettingsStore> MemorySettings();

}  // namespace quillmate::settings
