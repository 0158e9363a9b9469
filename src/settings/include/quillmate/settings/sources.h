#pragma once

#include <string>
#include <vector>

#include <quillmate/settings/settings_store.h>

/// The remembered sources: files and folders that the user added. Section "quellen", keys "Q0", "Q1", ... in the order
/// in which they were added; each text is a path in UTF-8.
namespace quillmate::settings {

/// In stored order; gaps and empty texts are passed over.
std::vector<std::string> LoadSources(const SettingsStore& store);
/// Replaces the whole section.
void SaveSources(SettingsStore& store, const std::vector<std::string>& paths);

}  // namespace quillmate::settings
