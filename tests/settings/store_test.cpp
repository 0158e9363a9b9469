#include <gtest/gtest.h>

#include <quillmate/settings/settings_store.h>
#include <quillmate/settings/sources.h>
#include <quillmate/text/operations.h>

#include "settings/lasting_settings.h"

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
  void Reopen() {
    if (GetParam()) {
      if (!store_) store_ = MemorySettings();
      return;
    }
    store_.reset();
    store_ = lasting_.Open();
  }
  SettingsStore& Store() { return *store_; }

  testing::LastingSettings lasting_;
  std::unique_ptr<SettingsStore> store_;
};

INSTANTIATE_TEST_SUITE_P(StoredAndMemory, BothStores, ::testing::Bool());

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

}  // namespace
}  // namespace quillmate::settings
