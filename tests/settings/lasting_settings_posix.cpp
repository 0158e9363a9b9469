#include "settings/lasting_settings.h"

namespace quillmate::testing {

LastingSettings::LastingSettings() = default;
LastingSettings::~LastingSettings() = default;

/// Each time another copy of the file, so that no cache can answer for it.
std::unique_ptr<settings::SettingsStore> LastingSettings::Open() {
  const std::filesystem::path last = place_;
  place_ = folder_.Path() / "unter" / ("Einst\xC3\xA4llung" + std::to_string(++opened_) + ".ini");
  if (!last.empty()) std::filesystem::copy_file(last, place_);
  return settings::OpenSettingsFile(place_);
}

}  // namespace quillmate::testing
