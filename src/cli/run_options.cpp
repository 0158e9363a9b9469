#include "run_options.h"

#include <filesystem>

#include <quillmate/files/paths.h>
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

std::string TitleOf(const Invocation& invocation) {
  if (invocation.title) return *invocation.title;
  if (invocation.host || invocation.inputs.size() > 1) return "Makroprojekt";
  const std::filesystem::path input = files::RealPath(files::PathFromText(invocation.inputs.front()));
  return files::PathText(std::filesystem::is_directory(input) ? input.filename() : input.stem());
}

}  // namespace quillmate::cli
