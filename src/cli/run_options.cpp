#include "run_options.h"

#include <quillmate/settings/settings_store.h>
#include <quillmate/startup/edition.h>

namespace quillmate::cli {

settings::Options RunOptions(const Invocation& invocation) {
  settings::Options options;
  if (invocation.userSettings) {
    settings::LoadOptions(*settings::OpenSettings(startup::SettingsRootOf(invocation.edition)), options);
  }
  for (const auto& [key, value] : invocation.settings) {
    settings::SetOption(options, key, value);
  }
  return options;
}

}  // namespace quillmate::cli
