#include <quillmate/files/file_bytes.h>

#include "modules.h"
#include "places.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// The reports of a project are the same from its sources and from its saved folder. What stands in them is checked
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
  EXPECT_TRUE(Run("modules --json p")
                  .out.ends_with("{\"mod_num\":4,\"mod_name\":\"A\\\"\\\\\\u0001\\tB\",\"mod_typ\":2,\"mod_zeilen\":3,"
                                 "\"routines\":[]}\n]}\n"));
}

TEST_F(CliTest, EmptyProjectHasEmptyReports) {
  Write("p/Quillmate.mdb", files::ReadWholeFile(tests::ProgramFolder() / "mask_Quillmate.mdb"));
  EXPECT_EQ(Run("modules --json p").out, "{\"modules\":[]}\n");
  for (const char* const line : {"modules p", "outline p", "text p"}) EXPECT_EQ(Run(line), Success());
}

}  // namespace
}  // namespace quillmate::cli
