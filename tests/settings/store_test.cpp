#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include <quillmate/settings/settings_store.h>
#include <quillmate/settings/sources.h>
#include <quillmate/text/operations.h>

#include "settings/temp_folder.h"

namespace quillmate::settings {
namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;

// Separated by "~".
constexpr std::string_view kAwkwardTexts =
    "plain~a,b,c~a, b~@Size(1 2)~@@x~@~\"quoted\"~ blank ~;comment~a;b~x=y~%20~C:\\a\\b\\~a/b//c/~/~\\x41~[s]~General~"
    "\xC3\xA4\xE2\x82\xAC~1\r\n2\n3\t~n\0l"sv;

class BothStores : public ::testing::TestWithParam<bool> {
 protected:
  /// A file's store is opened anew each time from a copy of its file, so that no cache can answer for the file.
  void Reopen() {
    if (GetParam()) {
      if (!store_) store_ = MemorySettings();
      return;
    }
    store_.reset();
    const std::filesystem::path last = file_;
    file_ = folder_.Path() / "unter" / ("Einst\xC3\xA4llung" + std::to_string(++opened_) + ".ini");
    if (!last.empty()) std::filesystem::copy_file(last, file_);
    store_ = OpenSettingsFile(file_);
  }
  SettingsStore& Store() { return *store_; }

  testing::TempFolder folder_;
  std::filesystem::path file_;
  int opened_ = 0;
  std::unique_ptr<SettingsStore> store_;
};

INSTANTIATE_TEST_SUITE_P(FileAndMemory, BothStores, ::testing::Bool());

TEST_P(BothStores, EveryTextComesBack) {
  Reopen();
  const std::vector<std::string_view> pieces = text::Split(kAwkwardTexts, "~");
  const Strings awkward(pieces.begin(), pieces.end());
  for (const std::string& text : awkward) {
    Store().WriteSetting("optionen", text, text + "1");
    Store().WriteSetting(text, "key", text);
  }
  Store().WriteSetting("", "", "nameless");
  Store().WriteSetting("leer", "key", "");
  Reopen();
  for (const std::string& text : awkward) {
    EXPECT_EQ(Store().ReadSetting("optionen", text), text + "1");
    EXPECT_EQ(Store().ReadSetting(text, "key"), text);
    EXPECT_EQ(Store().SettingKeys(text), Strings{"key"}) << text;
  }
  EXPECT_EQ(Store().SettingKeys("optionen").size(), awkward.size());
  EXPECT_EQ(Store().ReadSetting("", ""), "nameless");
  EXPECT_EQ(Store().SettingKeys(""), Strings{""});
  EXPECT_EQ(Store().SettingKeys("leer"), Strings{"key"});
}

TEST_P(BothStores, KeysStandInTheOrderOfTheirNumbers) {
  Reopen();
  for (const char* key :
       {"F10", "F2", "F0", "F1", "a", "F02", "F", "F99999999999999999999", "F100000000000000000000", "F2b"}) {
    Store().WriteSetting("recent", key, "x");
  }
  Reopen();
  EXPECT_EQ(Store().SettingKeys("recent"), (Strings{"F", "F0", "F1", "F2", "F02", "F2b", "F10", "F99999999999999999999",
                                                    "F100000000000000000000", "a"}));
}

TEST_P(BothStores, RemovingASectionLeavesTheOthers) {
  Reopen();
  Store().WriteSetting("recent", "F0", "a");
  Store().WriteSetting("recent2", "F0", "b");
  Reopen();
  Store().RemoveSettingSection("recent");
  Store().RemoveSettingSection("nothing");
  Store().WriteSetting("recent", "F1", "c");
  Reopen();
  EXPECT_EQ(Store().SettingKeys("recent"), Strings{"F1"});
  EXPECT_EQ(Store().ReadSetting("recent", "F0"), "");
  EXPECT_EQ(Store().ReadSetting("recent2", "F0"), "b");
}

TEST_P(BothStores, SourcesKeepTheirOrder) {
  Reopen();
  for (const std::size_t count : {12U, 1U}) {
    Strings paths(count, "/home/\xC3\xA4, x/");
    for (std::size_t i = 0; i < count; ++i) paths[i] += std::to_string(i);
    SaveSources(Store(), paths);
    Reopen();
    EXPECT_EQ(LoadSources(Store()), paths);
  }
}

TEST(StoredSettings, HandWrittenFileIsReadAsTexts) {
  const testing::TempFolder folder;
  std::ofstream(folder.Path() / "hand.ini") << "[optionen]\nfont=Courier New,12\n";
  const auto store = OpenSettingsFile(folder.Path() / "hand.ini");
  EXPECT_EQ(store->ReadSetting("optionen", "font"), "Courier New,12");
}

#ifndef _WIN32
TEST(StoredSettings, UsersFileLiesBelowTheConfigurationFolder) {
  const testing::TempFolder folder;
  setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
  OpenSettings("Qm_Quillmate\\Qm_Quill_Excel")->WriteSetting("proj", "proj_pf", "C:\\x");
  const auto file = OpenSettingsFile(folder.Path() / "Qm_Quillmate" / "Qm_Quill_Excel.ini");
  EXPECT_EQ(file->ReadSetting("proj", "proj_pf"), "C:\\x");
}
#endif

TEST(StoredSettings, UnwritableFileReportsNothing) {
  const testing::TempFolder folder;
  std::ofstream(folder.Path() / "file") << "x";
  const auto store = OpenSettingsFile(folder.Path() / "file" / "below.ini");
  store->WriteSetting("optionen", "tab", "7");
  store->RemoveSettingSection("recent");
  EXPECT_EQ(store->ReadSetting("recent", "F0"), "");
}

}  // namespace
}  // namespace quillmate::settings
