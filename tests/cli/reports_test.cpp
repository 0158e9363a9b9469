#include <quillmate/files/file_bytes.h>

#include "modules.h"
#include "places.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// The reports of a project are the same from its sources and from its saved folder. What is in them is checked
/// with the sample.
TEST_F(CliTest, ReportsOfSourcesAndOfTheSavedProject) {
  Write("a.bas", kGreeting);
  Write("b.cls", kCard);
  Write("odd.bas", "'\n'\n'\n");
  Write("odd.vbp", "UserControl=leer.ctl\nModule=A\"\\\001\tB; odd.bas\n");
  Write("leer.ctl", "'\n'\n'\n");
  ASSERT_EQ(Run("index -o p b.cls a.bas odd.vbp"), Success());
  for (const std::string command : {"modules --json ", "modules ", "outline "}) {
    const Result result = Run(command + "b.cls a.bas odd.vbp");
    EXPECT_NE(result.out.find("Anfang"), std::string::npos);
    EXPECT_EQ(result, Success(result.out));
    EXPECT_EQ(Run(command + "p"), result);
  }
  EXPECT_NE(Run("modules p").out.find("\nModul 3: leer, Anderes Modul (32), 3 Zeilen\n"), std::string::npos);
  EXPECT_TRUE(
      Run("modules --json p")
          .out.ends_with("{\"mod_num\":4,\"mod_name\":\"A\\\"\\\\\\u0001\\tB\",\"mod_typ\":2,\"mod_zeilen\":3," +
                         Origin("odd.bas", "odd") + ",\"routines\":[]}\n]}\n"));
}

TEST_F(CliTest, EmptyProjectHasEmptyReports) {
  Write("p/Quillmate.mdb", files::ReadWholeFile(tests::ProgramFolder() / "mask_Quillmate.mdb"));
  EXPECT_EQ(Run("modules --json p").out, "{\"modules\":[]}\n");
  for (const char* const line : {"modules p", "outline p", "text p"}) EXPECT_EQ(Run(line), Success());
}

/// Several projects: each with its line, module files of their own without one.
TEST_F(CliTest, OutlineOfSeveralProjects) {
  for (const char* const file : {"q/m.bas", "p/m.bas", "z.bas"}) {
    Write(file, "Attribute VB_Name = \"M\"\nSub B()\n\nEnd Sub\nSub A()\n\nEnd Sub\n");
  }
  const auto project = [&](const std::string& name) { return name + " (" + Full(name) + ")\n\tM\n\t\tA\n\t\tB\n"; };
  ASSERT_EQ(Run("index -o saved q z.bas p").status, 0);
  for (const char* const line : {"outline q z.bas p", "outline --exact q z.bas p", "outline saved"}) {
    EXPECT_EQ(Run(line), Success(project("q") + "M\n\tA\n\tB\n" + project("p"))) << line;
  }
  EXPECT_EQ(Run("outline q"), Success("M\n\tA\n\tB\n"));
}

/// Everything that is asked of the understanding has one answer, whether the project was saved or not.
TEST_F(CliTest, ASavedProjectMeansWhatItsSourcesMean) {
  Write("a.bas",
        "Attribute VB_Name = \"A\"\nSub Los()\nAttribute Los.VB_Description = \"x\"\n  Dim o As New K\n"
        "  o.Tu Kurz\n  '\xD0\x9F\xC3\xA4\nEnd Sub\n");
  Write("k.bas", "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"K\"\nSub Tu(x)\n\tx = \"\xE4\"\nEnd Sub\n");
  Write("kurz.bas", "Public Kurz\n");
  fs::create_directory(Folder() / "q");
  for (const char* const file : {"a.bas", "k.bas", "kurz.bas"}) fs::rename(Folder() / file, Folder() / "q" / file);
  const Result index = Run("index -o p q");
  EXPECT_EQ(index.err, "quillmate-cli: " + Full("q/a.bas") + ": 1 Zeichen wurde durch \"?\" ersetzt\n");
  EXPECT_EQ(Run("index -o laidOut --option einr=-1 --option rer=-1 --option leer=-1 --option rle=-1 q").status, 0);
  for (const char* const command : {"symbols --json", "modules --exact --json", "unused --exact --json", "tags"}) {
    const Result fromSources = Run(std::string(command) + " q");
    EXPECT_EQ(fromSources.status, 0) << fromSources.err;
    EXPECT_EQ(Run(std::string(command) + " p").out, fromSources.out) << command;
    EXPECT_EQ(Run(std::string(command) + " laidOut").out, fromSources.out) << command;
  }
  EXPECT_NE(Run("symbols --json p").out.find("\"name\":\"Kurz\",\"kind\":\"variable\""), std::string::npos);
}

}  // namespace
}  // namespace quillmate::cli
