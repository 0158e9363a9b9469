#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include <quillmate/codedb/code_database.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/settings/options.h>

namespace quillmate::startup {

/// The process-wide start-up state. Texts are UTF-8.
struct AppGlobals {
  int hostSelector = 0;
  std::string HostName;
  std::string EditionCode;
  std::string SettingsRoot;
  std::string AppTitle;
  /// Folder of the executable, or the user's data folder for an installed program; "TempDateien" is there.
  std::filesystem::path ProgramFolder;
  /// mask_Quillmate.mdb.
  std::filesystem::path TemplatePath;
  /// Current project folder: the scratch root during start, then this run's folder, then that of a saved project.
  std::filesystem::path TempFolder;
  /// This run's own scratch folder; empty until it is made.
  std::filesystem::path RunTempFolder;
  /// What holds it where the scratch root can't be written.
  std::unique_ptr<files::WorkFolder> scratchElsewhere;
  std::string LastProjectFolder;
  std::string DefaultFolder;
  settings::Options Options;
  /// Modules that the window can show: a view index has 16 bits.
  std::size_t MostViews = 32767;
  codedb::CodeDatabase CodeDb;
};

}  // namespace quillmate::startup
