#include <cstdlib>

#include <quillmate/settings/settings_store.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

TEST_F(CliTest, ModulesAreNamedAsTheDatabaseComparesThem) {
  Write("1.bas", "Attribute VB_Name = \"\334ber\"\n'1\n'\n'\n");
  Write("2.bas", "Attribute VB_Name = \"O'Neill\"\n'2\n'\n'\n");
  Write("3.bas", "Attribute VB_Name = \"o'neill\"\n'3\n'\n'\n");
  Write("4.bas", "Attribute VB_Name = \"?\"\n'4\n'\n'\n");
  const struct {
    const char* name;
    const char* start;
  } cases[] = {{"über", "'1"},    {"ÜBER", "'1"},   {"O'Neill", "'2"}, {"?", "'4"},
#ifndef _WIN32  // where the words of a command line may be any bytes
               {"\374ber", "'1"},
#endif
               {"uber", ""},      {"O''Neill", ""}, {"Ω", ""},         {"", ""},    {"x' OR '1'='1", ""}};
  for (const auto& c : cases) {
    const Result result = RunAt(Program(), {"text", "--module", c.name, "1.bas", "2.bas", "3.bas", "4.bas"});
    EXPECT_EQ(result.out.substr(0, 2), c.start) << c.name;
    EXPECT_EQ(result.status, *c.start == '\0' ? 1 : 0) << c.name;
    EXPECT_EQ(result.err, *c.start == '\0' ? Messages({"Es gibt kein Modul \"" + std::string(c.name) + "\""}) : "");
  }
}

/// A stored setting, put back at the end: on Windows they are the user's own.
class StoredSetting {
 public:
  StoredSetting(const char* root, const char* key, const char* value)
      : root_(root), key_(key), before_(settings::OpenSettings(root)->ReadSetting("optionen", key)) {
    Write(value);
  }
  ~StoredSetting() { Write(before_); }
  StoredSetting(const StoredSetting&) = delete;
  StoredSetting& operator=(const StoredSetting&) = delete;

 private:
  void Write(const std::string& value) const { settings::OpenSettings(root_)->WriteSetting("optionen", key_, value); }

  const char* root_;
  const char* key_;
  const std::string before_;
};

TEST_F(CliTest, SettingsComeFromTheDefaultsTheStoreAndTheCommandLine) {
#ifndef _WIN32
  setenv("XDG_CONFIG_HOME", (Folder() / "config").c_str(), 1);
#endif
  const StoredSetting font("Qm_Quillmate\\Qm_Quill_Word", "font", "Schöne Schrift,12");
  const StoredSetting noEmptyLines("Qm_Quillmate\\Qm_Quill_Excel", "leer", "-1");
  Write("a.bas", "Sub A()\n\nIf x Then\ny\nEnd If\nEnd Sub\n");
  const struct {
    const char* line;
    const char* part;
  } cases[] = {
      {"text", "Sub A()\r\n\r\nIf x Then\r\ny\r\n"},
      {"text --option einr=-1", "Sub A()\r\n\r\nIf x Then\r\n\ty\r\n"},
      {"text --option=einr=1 --option rer=1", "Sub A()\r\n\t\r\n\tIf x Then\r\n\t\ty\r\n"},
      {"text --user-settings", "Sub A()\r\nIf x Then\r\ny\r\n"},
      {"text --option leer=0 --user-settings", "Sub A()\r\n\r\nIf x"},
      {"text --user-settings --edition word", "Sub A()\r\n\r\nIf x"},
      {"rtf --user-settings --edition Word", "{\\f3\\fswiss Sch\366ne Schrift;}"},
      {"rtf --user-settings --edition word", "\\fs24 "},
  };
  for (const auto& c : cases) {
    const std::string out = Run(std::string(c.line) + " a.bas").out;
    EXPECT_NE(out.find(c.part), std::string::npos) << c.part << "\nin\n" << out;
  }
}

}  // namespace
}  // namespace quillmate::cli
