#pragma once

#include <string>

#include <quillmate/settings/settings_store.h>

namespace quillmate::settings {

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
