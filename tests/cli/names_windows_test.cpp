#include <filesystem>

#include <windows.h>

#include <quillmate/codedb/index_files.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// What the shells of other systems do before they start a program.
TEST_F(CliTest, WildcardsInTheLastPartOfAPath) {
  for (const char* const name : {"b.bas", "A1.BAS", "c\303\244.bas", "c.basx", "unter/c.cls", "unter/c.clsx", "ohne"}) {
    Write(name, "'1\n'2\n'3\n");
  }
  SetFileAttributesW(Write("~$b.bas", "x").c_str(), FILE_ATTRIBUTE_HIDDEN);
  const struct {
    std::vector<std::string> inputs;
    std::string outline;
  } cases[] = {
      {{"*.bas"}, "A1\nb\ncä\n"},
      {{"a?.Bas", "?.bas"}, "A1\nb\n"},
      {{".\\*.b*s"}, "A1\nb\ncä\n"},
      {{"unter\\*.cls", "b.bas"}, "b\nc\n"},
      {{"unter/c.*", "c\303\204.*"}, "cä\nc\n"},
      {{"*u*t*r*"}, "c\n"},
      {{"*.*s"}, "A1\nb\ncä\n"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments{"outline"};
    arguments.insert(arguments.end(), c.inputs.begin(), c.inputs.end());
    const Result result = Run(arguments);
    EXPECT_EQ(result.out, c.outline) << c.inputs[0];
  }
  const Result everything = Run({"outline", "*.*"});
  EXPECT_EQ(everything.out, "A1\nb\ncä\nc\n");
  EXPECT_NE(everything.err.find("ohne"), std::string::npos) << "it stands for names without a point too";
  EXPECT_EQ(Run({"search", "'?", "b.bas"}).out, "") << "the text is none of the inputs";
  for (const char* const nothing : {"*.frm", "fehlt\\*", "???.bas"}) {
    const Result result = Run({"modules", "b.bas", nothing});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, Messages({"Keine Datei und kein Ordner passt auf \"" + std::string(nothing) + "\""}));
  }
}

/// Reads and writes below a folder, and names what is not there.
class NamesTest : public CliTest {
 protected:
  void ExpectUsable(const std::string& folder) {
    const std::string file = folder + "\\Ω.bas";
    EXPECT_EQ(Run({"outline", file}).out, "Gruß\n\tAnfang\n\tOffen\n\tSumme\n\tZeit\n");
    EXPECT_EQ(Run({"index", "-o", folder + "\\проект", folder}).err, "");
    EXPECT_EQ(Run({"index", "-o", folder + "\\проект\\", "--force", file}).err, "");
    EXPECT_EQ(Run({"text", "-o", folder + "\\→.txt", folder + "\\проект"}).err, "");
    EXPECT_EQ(Run({"text", folder + "\\→.txt.bas"}).err, Messages({folder + "\\→.txt.bas: Datei existiert nicht"}));
    EXPECT_EQ(Run({"site", "-o", folder + "\\日本", folder}).err, "");
    EXPECT_EQ(Run({"text", folder + "\\проект"}).out, codedb::ReadWholeFile(codedb::PathFromText(folder + "\\→.txt")));
  }
};

TEST_F(NamesTest, OutsideTheCodePage) {
  Write("日本語/Ω.bas", kGreeting);
  ExpectUsable(Full("日本語"));
  EXPECT_EQ(Names("日本語"), "Ω.bas проект →.txt 日本");
}

TEST_F(NamesTest, LongerThan260Characters) {
  std::string folder = "tief";
  for (int i = 0; i < 8; ++i) folder += "/ein Ordner mit einem recht langen Namen";
  std::error_code error;
  if (!fs::create_directories(Folder() / folder, error)) GTEST_SKIP() << "long paths are switched off";
  Write(folder + "/Ω.bas", kGreeting);
  ExpectUsable(Full(folder));
}

TEST_F(NamesTest, OfTheNetwork) {
  Write("Ω.bas", kGreeting);
  std::string share = Full("");
  share.replace(0, 2, "\\\\localhost\\" + share.substr(0, 1) + "$");
  share.pop_back();
  if (std::error_code error; !fs::exists(codedb::PathFromText(share), error)) GTEST_SKIP() << share;
  ExpectUsable(share);
}

}  // namespace
}  // namespace quillmate::cli
