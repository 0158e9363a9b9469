// clang-format off
#include <windows.h>
#include <winreg.h>
// clang-format on

#include "settings/lasting_settings.h"

namespace quillmate::testing {

LastingSettings::LastingSettings() : place_(L"Qm_Test_" + folder_.Path().parent_path().filename().native()) {}

LastingSettings::~LastingSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + place_.native()).c_str()); }

std::unique_ptr<settings::SettingsStore> LastingSettings::Open() {
  return settings::OpenSettings(place_.string() + "\\Einst\xC3\xA4llung" + std::to_string(opened_));
}

}  // namespace quillmate::testing
