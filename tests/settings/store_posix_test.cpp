#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include <quillmate/settings/settings_store.h>

#include "files/scratch.h"

namespace quillmate::settings {
namespace {

TEST(StoredSettings, HandWrittenFileIsReadAsTexts) {
  const files::ScratchFolder folder;
  std::ofstream(folder.Path() / "hand.ini") << "[optionen]\nfont=Courier New,12\n";
  const auto store = OpenSettingsFile(folder.Path() / "hand.ini");
  EXPECT_EQ(store->ReadSetting("optionen", "font"), "Courier New,12");
}

TEST(StoredSettings, UsersFileLiesBelowTheConfigurationFolder) {
  const files::ScratchFolder folder;
  setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
  OpenSettings("Qm_Quillmate\\Qm_Quill_Excel")->WriteSetting("proj", "proj_pf", "C:\\x");
  const auto file = OpenSettingsFile(folder.Path() / "Qm_Quillmate" / "Qm_Quill_Excel.ini");
  EXPECT_EQ(file->ReadSetting("proj", "proj_pf"), "C:\\x");
}

TEST(StoredSettings, UnwritableFileReportsNothing) {
  const files::ScratchFolder folder;
  std::ofstream(folder.Path() / "file") << "x";
  const auto store = OpenSettingsFile(folder.Path() / "file" / "below.ini");
  store->WriteSetting("optionen", "tab", "7");
  store->RemoveSettingSection("recent");
  EXPECT_EQ(store->ReadSetting("recent", "F0"), "");
}

}  // namespace
}  // namespace quillmate::settings
