#include <clocale>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/settings/display_size.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/operations.h>

namespace quillmate::settings {
namespace {

/// Notes what is written, in its order.
class RecordingStore final : public SettingsStore {
 public:
  std::string ReadSetting(std::string_view, std::string_view) const override { return {}; }
  void WriteSetting(std::string_view section, std::string_view key, std::string_view value) override {
    written += std::string(section) + "/" + std::string(key) + "=" + std::string(value) + "\n";
  }
  void RemoveSettingSection(std::string_view section) override { written += "-" + std::string(section) + "\n"; }
  std::vector<std::string> SettingKeys(std::string_view) const override { return {}; }

  std::string written;
};

std::string Written(const Options& options) {
  RecordingStore store;
  SaveOptions(store, options);
  return store.written;
}

TEST(Options, AreWrittenInOrderWithTheirDefaults) {
  EXPECT_EQ(Written(Options()),
            "optionen/fkey=8388608\noptionen/fkom=32768\noptionen/fstr=128\noptionen/rouf=-1\noptionen/aufk=0\n"
            "optionen/leer=0\noptionen/vor=0\noptionen/rer=0\noptionen/rle=0\noptionen/meld=-1\noptionen/einr=0\n"
            "optionen/stapro=0\noptionen/tab=5\noptionen/font=MS Sans Serif,10\noptionen/usb=0\n");
}

TEST(Options, EveryValueSurvivesSavingAndLoading) {
  Options options;
  for (const auto& [key, text] : std::map<std::string, std::string>{{"fkey", "-1"},
                                                                    {"fkom", "16777215"},
                                                                    {"fstr", "0"},
                                                                    {"tab", "-32768"},
                                                                    {"font", "Schrift \xC3\xA4,12"},
                                                                    {"bis", "1;2;3;4"}}) {
    SetOption(options, key, text);
  }
  for (bool Options::*flag : {&Options::rouf, &Options::aufk, &Options::leer, &Options::vor, &Options::rer,
                              &Options::rle, &Options::meld, &Options::einr, &Options::stapro, &Options::usb}) {
    options.*flag = !(options.*flag);
  }
  const std::unique_ptr<SettingsStore> store = MemorySettings();
  SaveOptions(*store, options);
  Options loaded;
  LoadOptions(*store, loaded);
  EXPECT_EQ(Written(loaded), Written(options));
  EXPECT_EQ(loaded.bis, "max") << "stored by its own command only";
  store->WriteSetting("optionen", "bis", " 1;2");
  LoadOptions(*store, loaded);
  EXPECT_EQ(loaded.bis, " 1;2");
}

TEST(Options, TextFormsOfNumbersAndFlags) {
  // key=text>text when written again
  constexpr std::string_view cases =
      "fkey=255>255|fkey= -3x>-3|fkey=2.5>2|fkey=3.5>4|fkey=-2.5>-2|fkey=1e3>1000|fkey=&H80>0|fkey=rot>0|"
      "fkey=inf>0|fkey=2147483647.4>2147483647|fkey=2147483648>8388608|fkey=-2147483649>8388608|"
      "fkey=1e300>8388608|fkey=>8388608|tab=32767>32767|tab=32768>5|tab=0.5>0|tab=1.5>2|rle=-1>-1|rle=2>-1|"
      "rle=0.1>-1|meld=0>0|meld=ja>0|meld=>-1|font=Courier New,12>Courier New,12|"
      "font=Courier New>Courier New,0|font=14>14,14|font=A,B,9.5pt>A,10|font=A,99999>A,10|font=,8>,8";
  for (const std::string_view test : text::Split(cases, "|")) {
    const std::string_view key = text::TextBefore(test, "=");
    const std::string_view stored = text::TextBefore(test.substr(key.size() + 1), ">");
    Options options;
    EXPECT_TRUE(SetOption(options, key, stored));
    const std::string line = "/" + std::string(key) + "=" + std::string(text::TextAfterLast(test, ">")) + "\n";
    EXPECT_NE(Written(options).find(line), std::string::npos) << test << " gave\n" << Written(options);
  }
}

TEST(Options, UnknownKeysAreRefused) {
  Options options;
  for (const char* key : {"Tab", "", "proj_pf"}) EXPECT_FALSE(SetOption(options, key, "9"));
}

TEST(DisplaySize, IsParsedWholeOrNotAtAll) {
  // text>text when written again
  constexpr std::string_view cases =
      "MAX>max|100;200;3000;4000>100;200;3000;4000|-60;-60.5;12;7.125>-60;-60.5;12;7.125|1;2;3;4;5>1;2;3;4|"
      " 1 ;+2;3,5;.25>1;2;3.5;0.25|-0;0;1;1e3>0;0;1;1000|100;200>none|1;2;3;>none|1;2;3;4x>none|"
      "1;2;3;inf>none|1;2;nan;4>none|1;2;3;+-4>none|1;2;3;1e999>none| max>none|>none";
  for (const std::string_view test : text::Split(cases, "|")) {
    const std::optional<DisplaySize> size = ParseDisplaySize(text::TextBefore(test, ">"));
    EXPECT_EQ(size ? FormatDisplaySize(*size) : "none", text::TextAfterLast(test, ">")) << test;
  }
}

TEST(DisplaySize, TextHasNeitherExponentNorLocale) {
  const char* locale = std::setlocale(LC_ALL, "de_DE.UTF-8");
  const std::string text = FormatDisplaySize({.maximized = false, .place = {0.1, 1e21, 0.0001, 1234567.5}});
  if (locale) std::setlocale(LC_ALL, "C");
  EXPECT_EQ(text, "0.1;1000000000000000000000;0.0001;1234567.5");
}

}  // namespace
}  // namespace quillmate::settings
