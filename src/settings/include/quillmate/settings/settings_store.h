#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::settings {

/// The user's settings: texts under (section, key) below an application path. Everything UTF-8, and every text comes
/// back as it was written, whatever characters text, section and key hold.
///
/// Where they are kept: on Windows the registry (HKEY_CURRENT_USER\Software\ + path), elsewhere an ini file below the
/// user's configuration folder (~/.config/Qm_Quillmate/Qm_Quill_Excel.ini): [section], then key=text. "/", "\" and "%"
/// in section and key names stand there as "%2F", "%5C" and "%25", an empty name as "%" (the file then escapes "%"
/// once more). A list that somebody wrote into the file by hand (a,b) is read as the text "a,b".
///
/// Several instances of the program may use the same settings: a reader sees what another instance has stored. Texts
/// reach the disk when the event loop turns, or with the end of the store.
class SettingsStore {
 public:
  SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;
  virtual ~SettingsStore() = default;

  /// The stored text; empty when section or key do not exist. Never fails.
  virtual std::string ReadSetting(std::string_view section, std::string_view key) const = 0;
  /// Never reports an error.
  virtual void WriteSetting(std::string_view section, std::string_view key, std::string_view value) = 0;
  /// A section that does not exist is no error.
  virtual void RemoveSettingSection(std::string_view section) = 0;
  /// Keys of a section in the order of their names, numbers by value ("F2" before "F10").
  virtual std::vector<std::string> SettingKeys(std::string_view section) const = 0;
};

/// `settingsRoot` as in `AppGlobals`: two names joined by a backslash.
std::unique_ptr<SettingsStore> OpenSettings(const std::string& settingsRoot);

/// The same in an ini file of its own, on every platform.
std::unique_ptr<SettingsStore> OpenSettingsFile(const std::filesystem::path& file);

/// Keeps the values in memory only; for tests and for runs that must not touch the user's settings.
std::unique_ptr<SettingsStore> MemorySettings();

}  // namespace quillmate::settings
