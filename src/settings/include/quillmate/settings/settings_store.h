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
/// Where they are kept: on Windows the registry, a key HKEY_CURRENT_USER\Software\ + path + \section with a text value
/// for each key; elsewhere an ini file below the user's configuration folder
/// (~/.config/Qm_Quillmate/Qm_Quill_Excel.ini): [section], then key=text.
///
/// Names are stored as they are, but "%" and what the storage can't take ("/" and "\" in the file; in the registry "\"
/// in a section and the character 0) stand as "%" with two hexadecimal digits, and an empty name as "%" (the file then
/// escapes "%" once more). The registry doesn't tell capitals from small letters. What somebody else stored is read as
/// a text all the same: a list that was written into the file by hand (a,b) as "a,b", a number of the registry in
/// decimal.
///
/// Several instances of the program may use the same settings: a reader sees what another instance has stored. Texts
/// reach the storage when the event loop turns, or with the end of the store, at the latest.
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

#ifndef _WIN32
/// The same in an ini file of its own.
std::unique_ptr<SettingsStore> OpenSettingsFile(const std::filesystem::path& file);
#endif

/// Keeps the values in memory only; for tests and for runs that must not touch the user's settings.
std::unique_ptr<SettingsStore> MemorySettings();

}  // namespace quillmate::settings
