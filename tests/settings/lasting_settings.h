#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <quillmate/settings/settings_store.h>

#include "files/scratch.h"

namespace quillmate::testing {

/// Stored settings of a test's own, gone at its end.
class LastingSettings {
 public:
  LastingSettings();
  ~LastingSettings();
  LastingSettings(const LastingSettings&) = delete;
  LastingSettings& operator=(const LastingSettings&) = delete;

  /// Opens them so that only what reached the storage is there; the store opened before must be closed.
  std::unique_ptr<settings::SettingsStore> Open();

 private:
  files::ScratchFolder folder_;
  std::filesystem::path place_;
  int opened_ = 0;
};

}  // namespace quillmate::testing
