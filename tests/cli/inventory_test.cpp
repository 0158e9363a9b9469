#include <string>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

class InventoryTest : public CliTest {
 protected:
  InventoryTest() {
    Write("r/=eins.bas", "Attribute VB_Name = \"Eins\"\r\nSub A()\r\n  Shell \"x\"\r\nEnd Sub\r\n");
    Write("r/Ablage/zwei.bas", "Attribute VB_Name = \"Zwei\"\r\nSub B()\r\nEnd Sub\r\n");
    Write("r/Ablage/Größe/drei.bas", "Attribute VB_Name = \"Drei\"\r\nSub C()\r\nEnd Sub\r\n");
    Write("r/Ablage/kaputt.xlsm", "PK\3\4");
  }
  std::string Scan(const std::string& arguments) { return Run("inventory scan -o b " + arguments).out; }
};

TEST_F(InventoryTest, TakesListsPatternsAndNumbersOfJobs) {
  EXPECT_EQ(Scan("r"), "4 Dateien: 4 gelesen, 0 unverändert, 0 verschwunden; von den gelesenen unlesbar: 1\n");
  EXPECT_EQ(Scan("--jobs 1000 r r/Ablage r"),
            "4 Dateien: 0 gelesen, 4 unverändert, 0 verschwunden; von den gelesenen unlesbar: 0\n");
  // What is left out has not vanished.
  EXPECT_EQ(Scan("--exclude größe --exclude Z?EI.bas r"),
            "2 Dateien: 0 gelesen, 2 unverändert, 0 verschwunden; von den gelesenen unlesbar: 0\n");
  Write("liste", "r/=eins.bas\r\n\r\nr/Ablage\r\n");
  EXPECT_EQ(Scan("--files-from liste"),
            "4 Dateien: 0 gelesen, 4 unverändert, 0 verschwunden; von den gelesenen unlesbar: 0\n");
  const struct {
    const char* arguments;
    int status;
  } refused[] = {{"inventory scan -o b --jobs 0 r", 2},
                 {"inventory scan r", 2},
                 {"inventory scan -o b --shard 3/2 r", 2},
                 {"inventory schau -o b r", 2},
                 {"inventory merge -o b b", 2},
                 {"inventory report b b", 2},
                 {"inventory report r", 1},
                 {"inventory report liste", 1},
                 {"inventory report --json --csv b", 2},
                 {"inventory report --since 99 b", 1},
                 {"inventory report fehlt.sqlite", 1},
                 {"inventory scan -o r/Ablage r", 1},
                 {"inventory scan -o liste r", 1},
                 {"inventory merge -o ganz fehlt.sqlite", 1},
                 {"inventory merge -o liste b", 1}};
  for (const auto& each : refused) EXPECT_EQ(Run(each.arguments).status, each.status) << each.arguments;
  EXPECT_EQ(Read("liste"), "r/=eins.bas\r\n\r\nr/Ablage\r\n");
}

TEST_F(InventoryTest, WritesEachTableIntoAFolder) {
  Scan("r");
  EXPECT_EQ(Run("inventory report --csv -o tabellen/ b"), Success());
  EXPECT_EQ(
      Names("tabellen"),
      "bits64.csv broken_references.csv dead_links.csv duplicates.csv files.csv findings.csv outside.csv runs.csv "
      "signatures.csv starts.csv unread.csv");
  EXPECT_NE(Read("tabellen/files.csv")
                .find("\xEF\xBB\xBF"
                      "Datei;Zustand;"),
            std::string::npos);
  EXPECT_EQ(Read("tabellen/files.csv"), Run("inventory report --csv b").out);
  EXPECT_NE(Read("tabellen/unread.csv").find("kaputt.xlsm;beschädigt;"), std::string::npos);
  EXPECT_EQ(Run("inventory report --csv --since 1 -o tabellen b"), Success());
  EXPECT_NE(Names("tabellen").find("changes.csv"), std::string::npos);
  EXPECT_EQ(Run("inventory report --csv -o b/ b").status, 1);
  EXPECT_EQ(Run("inventory report --html seite.htm --xlsx mappe.xlsx b"), Success());
  EXPECT_TRUE(Read("mappe.xlsx").starts_with("PK"));
  EXPECT_NE(Read("seite.htm").find("kaputt.xlsm"), std::string::npos);
}

/// An inventory in which nothing is has an answer to everything too.
TEST_F(InventoryTest, ReportsOfNothing) {
  fs::create_directories(Folder() / "leer");
  EXPECT_EQ(Scan("leer"), "0 Dateien: 0 gelesen, 0 unverändert, 0 verschwunden; von den gelesenen unlesbar: 0\n");
  for (const char* const form : {"", "--json", "--csv", "--csv -o t/", "--xlsx m.xlsx", "--html s.htm", "--since 1"}) {
    EXPECT_EQ(Run("inventory report " + std::string(form) + " b").status, 0) << form;
  }
  EXPECT_TRUE(Run("inventory report b").out.starts_with("0 Dateien"));
}

}  // namespace
}  // namespace quillmate::cli
