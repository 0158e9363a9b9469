#include <windows.h>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// What the shells of other systems do before they start a program.
TEST_F(CliTest, WildcardsInTheLastPartOfAPath) {
  for (const char* const name : {"b.bas", "A1.BAS", "c\303\244.bas", "c.basx", "unter/c.cls", "unter/c.clsx", "ohne"}) {
    Write(name, "'1\n'2\n'3\n");
  }
  SetFileAttributesW(Write("~$b.bas", "x").c_str(), FILE_ATTRIBUTE_HIDDEN);
  const struct {
    const char* inputs;
    const char* outline;
  } cases[] = {
      {"*.bas", "A1\nb\ncä\n"},         {"a?.Bas ?.bas", "A1\nb\n"},          {".\\*.b*s", "A1\nb\ncä\n"},
      {"unter\\*.cls b.bas", "b\nc\n"}, {"unter/c.* c\303\204.*", "cä\nc\n"}, {"*u*t*r*", "c\n"},
      {"*.*s", "A1\nb\ncä\n"},
  };
  for (const auto& c : cases) EXPECT_EQ(Run("outline " + std::string(c.inputs)).out, c.outline) << c.inputs;
  const Result everything = Run("outline *.*");
  EXPECT_EQ(everything.out, "A1\nb\ncä\nunter (" + Full("unter") + ")\n\tc\n");
  EXPECT_NE(everything.err.find("ohne"), std::string::npos) << "it stands for names without a point too";
  EXPECT_EQ(Run("search '\\'?' b.bas"), Success()) << "the text is none of the inputs";
  for (const char* const nothing : {"*.frm", "fehlt\\*", "???.bas"}) {
    const std::string pattern(nothing);
    EXPECT_EQ(Run("modules b.bas " + pattern),
              Refusal(1, {"Keine Datei und kein Ordner passt auf \"" + pattern + "\""}));
  }
}

/// Reads and writes below a folder, and names what is not there.
class NamesTest : public CliTest {
 protected:
  void ExpectUsable(const std::string& folder) {
    const auto run = [&](const std::vector<std::string>& arguments) { return RunAt(Program(), arguments); };
    const std::string file = folder + "\\Ω.bas";
    EXPECT_EQ(run({"outline", file}).out, "Gruß\n\tAnfang\n\tOffen\n\tSumme\n\tZeit\n");
    EXPECT_EQ(run({"index", "-o", folder + "\\проект", folder}).err, "");
    EXPECT_EQ(run({"index", "-o", folder + "\\проект\\", "--force", file}).err, "");
    EXPECT_EQ(run({"text", "-o", folder + "\\→.txt", folder + "\\проект"}).err, "");
    EXPECT_EQ(run({"text", folder + "\\→.txt.bas"}).err, Messages({folder + "\\→.txt.bas: Datei existiert nicht"}));
    EXPECT_EQ(run({"site", "-o", folder + "\\日本", folder}).err, "");
    EXPECT_EQ(run({"text", folder + "\\проект"}).out, files::ReadWholeFile(files::PathFromText(folder + "\\→.txt")));
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
  if (std::error_code error; !fs::exists(files::PathFromText(share), error)) GTEST_SKIP() << share;
  ExpectUsable(share);
}

}  // namespace
}  // namespace quillmate::cli
