#include <quillmate/codedb/index_files.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kJson =
    "{\"modules\":[\n"
    "{\"mod_num\":1,\"mod_name\":\"Karte\",\"mod_typ\":3,\"mod_zeilen\":4,\"routines\":[\n"
    "{\"rou_num\":1,\"rou_name\":\"Name\",\"rou_typ\":4,\"rou_open\":1,\"anz_dec_zeilen\":1,\"rou_start\":2,"
    "\"rou_ende\":4}\n"
    "]},\n"
    "{\"mod_num\":2,\"mod_name\":\"Gruß\",\"mod_typ\":2,\"mod_zeilen\":10,\"routines\":[\n"
    "{\"rou_num\":2,\"rou_name\":\"Anfang\",\"rou_typ\":1,\"rou_open\":1,\"anz_dec_zeilen\":1,\"rou_start\":2,"
    "\"rou_ende\":4},\n"
    "{\"rou_num\":3,\"rou_name\":\"Offen\",\"rou_typ\":1,\"rou_open\":3,\"anz_dec_zeilen\":1,\"rou_start\":10,"
    "\"rou_ende\":null},\n"
    "{\"rou_num\":4,\"rou_name\":\"Zeit\",\"rou_typ\":12,\"rou_open\":2,\"anz_dec_zeilen\":1,\"rou_start\":5,"
    "\"rou_ende\":5},\n"
    "{\"rou_num\":5,\"rou_name\":\"Summe\",\"rou_typ\":2,\"rou_open\":1,\"anz_dec_zeilen\":2,\"rou_start\":6,"
    "\"rou_ende\":9}\n"
    "]},\n"
    "{\"mod_num\":3,\"mod_name\":\"A\\\"\\\\\\u0001\\tB\",\"mod_typ\":2,\"mod_zeilen\":3,\"routines\":[]}\n"
    "]}\n";

constexpr const char* kTable =
    "Modul 1: Gruß, Allgemeines Modul (2), 10 Zeilen\n"
    "      Nr  Art                    Sichtbarkeit  Kopf  Beginn    Ende  Name\n"
    "       1  Sub (1)                Public (1)       1       2       4  Anfang\n"
    "       2  Sub (1)                Friend (3)       1      10       -  Offen\n"
    "       3  Declare Function (12)  Private (2)      1       5       5  Zeit\n"
    "       4  Function (2)           Public (1)       2       6       9  Summe\n"
    "\n"
    "Modul 2: leer, Anderes Modul (32), 3 Zeilen\n";

/// The reports of a project are the same from its sources and from its saved folder.
TEST_F(CliTest, ModulesAndOutlineOfSourcesAndOfTheSavedProject) {
  Write("a.bas", kGreeting);
  Write("b.cls", kCard);
  Write("odd.bas", "'\n'\n'\n");
  Write("odd.vbp", "Module=A\"\\\001\tB; odd.bas\n");
  Write("leer.ctl", "'\n'\n'\n");
  EXPECT_EQ(Run({"index", "-o", "p", "b.cls", "a.bas", "odd.vbp"}).status, 0);
  EXPECT_EQ(Run({"index", "-o", "q", "a.bas", "leer.ctl"}).status, 0);
  const struct {
    std::vector<std::string> options;
    std::vector<std::string> sources;
    const char* project;
    std::string expected;
  } cases[] = {
      {{"modules", "--json"}, {"b.cls", "a.bas", "odd.vbp"}, "p", kJson},
      {{"modules"}, {"a.bas", "leer.ctl"}, "q", kTable},
      {{"outline"}, {"a.bas", "leer.ctl"}, "q", "Gruß\n\tAnfang\n\tOffen\n\tSumme\n\tZeit\nleer\n"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.options;
    arguments.emplace_back(c.project);
    EXPECT_EQ(Run(arguments).out, c.expected);
    arguments = c.options;
    arguments.insert(arguments.end(), c.sources.begin(), c.sources.end());
    const Result result = Run(arguments);
    EXPECT_EQ(result.out, c.expected);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
}

TEST_F(CliTest, EmptyProjectHasEmptyReports) {
  Write("p/Quillmate.mdb", codedb::ReadWholeFile(QUILLMATE_BIN_DIR "/mask_Quillmate.mdb"));
  EXPECT_EQ(Run({"modules", "--json", "p"}).out, "{\"modules\":[]}\n");
  EXPECT_EQ(Run({"modules", "p"}).out, "");
  EXPECT_EQ(Run({"outline", "p"}).out, "");
  EXPECT_EQ(Run({"text", "p"}).out, "");
}

}  // namespace
}  // namespace quillmate::cli
