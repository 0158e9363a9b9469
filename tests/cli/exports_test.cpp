#include <cstdlib>

#include <quillmate/settings/settings_store.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kCardText =
    "Private mName As String\r\nProperty Get Name() As String\r\nName = mName\r\nEnd Property\r\n\r\n";

std::string StarsAround(const std::string& line) {
  const std::string stars = "' " + std::string(62, '*') + "\r\n";
  return "\r\n\r\n" + stars + line + "\r\n" + stars + "\r\n";
}

const std::string kRtfHead =
    "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\fswiss MS Sans Serif;}\r\n"
    "{\\f1\\froman\\fcharset2 Symbol;}{\\f2\\fswiss MS Sans Serif;}{\\f3\\fswiss MS Sans Serif;}{\\f4\\fswiss\\fprq2 "
    "System;}}\r\n"
    "{\\colortbl\\red0\\green0\\blue0;\\red0\\green0\\blue128;\\red0\\green128\\blue0;\\red128\\green0\\blue0;}\r\n"
    "\\deflang1031\\pard\\li105\\tx283\\tx566\\tx849\\tx1132\\tx1415\\tx1698\\tx1981\\tx2264\\tx2547\\tx2830"
    "\\plain\\f3\\fs20 ";

constexpr const char* kCardRtf =
    "\\cf1 Private\\cf0  mName \\cf1 As\\cf0  \\cf1 String\\cf0 \r\n"
    "\\par \\b \\cf1 Property\\cf0  \\cf1 Get\\cf0  Name() \\cf1 As\\cf0  \\cf1 String\\cf0 \\b0 \r\n"
    "\\par Name = mName\r\n"
    "\\par \\b \\cf1 End\\cf0  \\cf1 Property\\cf0 \\b0 \r\n"
    "\\par \r\n"
    "\\par }";

TEST_F(CliTest, ExportsAreWindows1252) {
  Write("b.cls", kCard);
  Write("c.bas", "'\344\n'\303\244\n'{\n");
  const std::string comment = "'\344\r\n'\303\244\r\n'{\r\n\r\n";
  const std::string project = StarsAround("'  Modul:  Karte  Typ = Klassenmodul") + kCardText +
                              StarsAround("'  Modul:  c  Typ = Allgemeines Modul") + comment;
  EXPECT_EQ(Run({"text", "b.cls", "c.bas"}).out, project);
  EXPECT_EQ(Run({"text", "--module", "C", "b.cls", "c.bas"}).out, comment);
  EXPECT_EQ(Run({"rtf", "--module", "Karte", "b.cls", "c.bas"}).out, kRtfHead + kCardRtf);
  const std::string rtf = Run({"rtf", "b.cls", "c.bas"}).out;
  EXPECT_TRUE(rtf.starts_with(kRtfHead + "\r\n\\par \r\n\\par \\b \\cf2 ' ***"));
  EXPECT_TRUE(rtf.ends_with("\\par \\cf2 '\\{\\cf0 \r\n\\par \r\n\\par }")) << rtf;
}

TEST_F(CliTest, ModulesAreNamedAsTheDatabaseComparesThem) {
  Write("1.bas", "Attribute VB_Name = \"\334ber\"\n'1\n'\n'\n");
  Write("2.bas", "Attribute VB_Name = \"O'Neill\"\n'2\n'\n'\n");
  Write("3.bas", "Attribute VB_Name = \"o'neill\"\n'3\n'\n'\n");
  Write("4.bas", "Attribute VB_Name = \"?\"\n'4\n'\n'\n");
  const struct {
    const char* name;
    const char* start;
  } cases[] = {{"über", "'1"},    {"ÜBER", "'1"},   {"O'NEILL", "'2"}, {"?", "'4"},
#ifndef _WIN32  // where the words of a command line may be any bytes
               {"\374ber", "'1"},
#endif
               {"uber", ""},      {"O''Neill", ""}, {"Ω", ""},         {"", ""},    {"x' OR '1'='1", ""}};
  for (const auto& c : cases) {
    const Result result = Run({"text", "--module", c.name, "1.bas", "2.bas", "3.bas", "4.bas"});
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
    std::vector<std::string> arguments;
    const char* part;
  } cases[] = {
      {{"text"}, "Sub A()\r\n\r\nIf x Then\r\ny\r\n"},
      {{"text", "--option", "einr=-1"}, "Sub A()\r\n\r\nIf x Then\r\n\ty\r\n"},
      {{"text", "--option=einr=1", "--option", "rer=1"}, "Sub A()\r\n\t\r\n\tIf x Then\r\n\t\ty\r\n"},
      {{"text", "--option", "rle=1"}, "\r\n\r\nSub A()\r\n"},
      {{"text", "--user-settings"}, "Sub A()\r\nIf x Then\r\ny\r\n"},
      {{"text", "--option", "leer=0", "--user-settings"}, "Sub A()\r\n\r\nIf x"},
      {{"text", "--user-settings", "--edition", "word"}, "Sub A()\r\n\r\nIf x"},
      {{"rtf", "--user-settings", "--edition", "Word"}, "{\\f3\\fswiss Sch\366ne Schrift;}"},
      {{"rtf", "--user-settings", "--edition", "word"}, "\\fs24 "},
      {{"rtf", "--option", "fkey=16711680"}, "\\blue0;\\red0\\green0\\blue255;"},
      {{"rtf", "--option", "rouf=0"}, "\r\n\\par \\cf1 Sub\\cf0  A()\r\n"},
      {{"rtf", "--option", "tab=10"}, "\\tx567\\tx1134"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.arguments;
    arguments.emplace_back("a.bas");
    EXPECT_NE(Run(arguments).out.find(c.part), std::string::npos) << c.part << "\nin\n" << Run(arguments).out;
  }
}

}  // namespace
}  // namespace quillmate::cli
