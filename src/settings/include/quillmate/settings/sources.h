#pragma once

#include <string>
#include <vector>

#include <quillmate/settings/settings_store.h>

/// What the user has added, and how it is read.
///
/// Sources are files and folders: section "quellen", keys "Q0", "Q1", ... in the order
/// in which they were added; each text is a path in UTF-8.
namespace quillmate::settings {

/// In stored order; gaps and empty texts are passed over.
std::vector<std::string> LoadSources(const SettingsStore& store);
/// Replaces the whole section.
void SaveSources(SettingsStore& store, const std::vector<std::string>& paths);

/// How files are read that the user has added: section "lesen", `excel4` ("-1"/"0") and `zeichensatz`, the number of a
/// code page.
struct ReadingOptions {
  /// Formulas of Excel 4 macro sheets count as modules.
  bool excel4 = false;
  /// Windows number of the code page of module files that tell no encoding; 0 for Windows-1252.
  int codePage = 0;
};

ReadingOptions LoadReadingOptions(const SettingsStore& store);
void SaveReadingOptions(SettingsStore& store, const ReadingOptions& options);

}  // namespace quillmate::settings
