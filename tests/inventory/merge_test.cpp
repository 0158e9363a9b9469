#include <algorithm>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <quillmate/inventory/merge.h>
#include <quillmate/inventory/scan.h>

#include "files/scratch.h"
#include "inventory/estate.h"
#include "inventory/own_program.h"
#include "inventory/table.h"
#include "places.h"
#include "schema_p.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;

/// All rows of all tables but for the numbers of rows and runs, and times of runs.
std::string Rows(const fs::path& database) {
  const char* const kKey = "(SELECT pruefsumme || art FROM inhalt i WHERE i.nr = t.inhalt)";
  std::string rows = Ask(database, "SELECT pfad, grund FROM ordner ORDER BY pfad");
  rows += Ask(database, "SELECT o.pfad, t.name, t.groesse, t.zeit, t.zustand, t.grund, t.verschwunden IS NULL, " +
                            std::string(kKey) + " FROM datei t JOIN ordner o ON o.nr = t.ordner ORDER BY 1, 2");
  rows +=
      Ask(database,
          "SELECT pruefsumme, art, fassung, groesse, zustand, grund, format, codepage, projekt, schutz, signiert, "
          "titel, autor, zuletzt_von, firma, programm, erstellt, gespeichert, excel4, ersetzt, module, routinen, "
          "zeilen, codezeilen, befunde, unterzeichner, aussteller, gueltig_von, gueltig_bis FROM inhalt ORDER BY 1, "
          "2");
  rows +=
      Ask(database,
          "SELECT o.pfad, d.name, z.folge, z.art, z.ziel, z.pfad, z.befund, t.name FROM zieldatei z JOIN datei d ON "
          "d.nr = z.datei JOIN ordner o ON o.nr = d.ordner LEFT JOIN datei t ON t.nr = z.ist ORDER BY 1, 2, 3");
  for (const char* const table :
       {"modul", "routine", "verweis", "verknuepfung", "bindung", "befund", "befundzahl", "api"}) {
    const std::string columns =
        Ask(database, "SELECT group_concat(name, ', ') FROM (SELECT name FROM pragma_table_info('" +
                          std::string(table) + "') WHERE name <> 'inhalt')");
    rows += Ask(database, "SELECT '" + std::string(table) + "', " + kKey + ", " + columns + " FROM " + table +
                              " t ORDER BY 2, folge");
  }
  return rows;
}

TEST(Merge, GivesTheRowsOfOneScanInAnyOrder) {
  const files::ScratchFolder scratch;
  const fs::path root = scratch / "Ablage", whole = scratch / "ganz";
  const auto estate = MakeEstate(root, {.files = 200, .sample = tests::SourceFolder() / "samples" / "Lagerverwaltung"});
  Scan(whole, Options(root));
  std::vector<fs::path> parts;
  for (unsigned shard = 1; shard <= 4; ++shard) {
    parts.push_back(scratch / ("teil" + std::to_string(shard)));
    Scan(parts.back(), Options(root, shard, 4));
  }
  const std::string rows = Rows(whole);
  ASSERT_NE(rows.find("befundzahl"), std::string::npos);
  Merge(scratch / "vorn", parts);
  EXPECT_EQ(Rows(scratch / "vorn"), rows);
  std::vector<fs::path> back(parts.rbegin(), parts.rend());
  back.insert(back.end(), parts.begin(), parts.end());
  back.push_back(whole);
  Merge(scratch / "hinten", back);
  EXPECT_EQ(Rows(scratch / "hinten"), rows);
  EXPECT_EQ(Ask(scratch / "hinten", "SELECT count(*) FROM lauf"), "5\n");
  EXPECT_EQ(Ask(scratch / "hinten", "PRAGMA foreign_key_check"), "");

  // What the later run says counts, whichever comes first; what was lost in one part may have been read in another.
  fs::remove(estate[0].path);
  files::WriteWholeFile(root / "neu.bas", "Sub Neu()\r\nEnd Sub\r\n");
  const std::string failed =
      "UPDATE inhalt SET zustand = 'zeitlimit', grund = 'zu lange' WHERE nr = 1;"
      "UPDATE datei SET zustand = 'zeitlimit' WHERE inhalt = 1";
  Ask(parts[0], failed);
  // Runs of one second have no order: these are told apart by hand.
  for (const fs::path& part : parts) Ask(part, "UPDATE lauf SET begonnen = '2020-01-01T00:00:00Z'");
  fs::copy_file(whole, scratch / "neuer");
  Ask(scratch / "neuer", "UPDATE lauf SET begonnen = '2021-01-01T00:00:00Z'");
  Scan(scratch / "neuer", Options(root));
  const std::string newer = Rows(scratch / "neuer");
  ASSERT_NE(newer, rows);
  std::vector<fs::path> all = parts;
  all.push_back(scratch / "neuer");
  Merge(scratch / "a", all);
  std::ranges::reverse(all);
  Merge(scratch / "b", all);
  EXPECT_EQ(Rows(scratch / "a"), newer);
  EXPECT_EQ(Rows(scratch / "b"), newer);
}

TEST(Merge, TakesWhatWasReadInAnotherPart) {
  const files::ScratchFolder scratch;
  const std::string code = "Sub A()\r\nEnd Sub\r\n";
  scratch.Write("a/eins.bas", code);
  scratch.Write("b/zwei.bas", code);
  scratch.Write("b/drei.bas", code + "' anders");
  const fs::path lost = scratch / "verloren", read = scratch / "gelesen";
  Scan(lost, Options(scratch / "a"));
  Scan(read, Options(scratch / "b"));
  Ask(lost,
      "UPDATE inhalt SET zustand = 'zeitlimit', module = 0; UPDATE datei SET zustand = 'zeitlimit';"
      "DELETE FROM modul; DELETE FROM routine");
  const std::vector<fs::path> orders[] = {{lost, read}, {read, lost}, {lost, lost, read}, {read, lost, read}};
  for (const std::vector<fs::path>& order : orders) {
    const fs::path whole = scratch / "ganz";
    fs::remove(whole);
    Merge(whole, order);
    EXPECT_EQ(Ask(whole, "SELECT name, zustand FROM datei ORDER BY name"),
              "drei.bas|makros\neins.bas|makros\nzwei.bas|makros\n");
    EXPECT_EQ(Ask(whole, "SELECT count(*) FROM modul"), "2\n");
    EXPECT_EQ(Ask(whole, "SELECT name FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL ORDER BY name"),
              "datei_da\nmodul_pruefsumme\nverweis_bruch\nzieldatei_ist\n");
    EXPECT_EQ(Ask(whole, "PRAGMA foreign_key_check"), "");
    EXPECT_EQ(Ask(whole, "PRAGMA integrity_check"), "ok\n");
  }
}

TEST(Merge, HoldsABoundedShareOfItsPages) {
  const files::ScratchFolder scratch;
  Database database(scratch / "ganz", Database::Mode::kCreate);
  PrepareSchema(database);
  database.Run("CREATE TABLE fuellung(nr INTEGER PRIMARY KEY, inhalt BLOB)");
  const auto pagesInMemory = [&] {
    int bytes = 0, most = 0;
    sqlite3_db_status(database.Handle(), SQLITE_DBSTATUS_CACHE_USED, &bytes, &most, 0);
    return bytes;
  };
  constexpr int kLimit = 32 << 20, kRoom = 1 << 20;
  for (const int times : {1, 2}) {
    database.Run(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) INSERT INTO fuellung(inhalt) "
        "SELECT zeroblob(16000) FROM n");
    EXPECT_LT(pagesInMemory(), kLimit + kRoom) << times;
  }
}

TEST(Merge, RefusesWhatIsNoInventory) {
  const files::ScratchFolder scratch;
  Ask(scratch / "andere", "CREATE TABLE x(y)");
  for (const fs::path& part :
       {scratch / "andere", scratch / "gibt es nicht", scratch.Write("text", std::string(600, 'x'))}) {
    EXPECT_THROW(Merge(scratch / "ganz", {part}), files::Failure) << part;
  }
  EXPECT_FALSE(fs::exists(scratch / "gibt es nicht"));
  EXPECT_NE(files::MessageOf([&] {
              Merge(scratch / "ganz", {scratch / "x" / ".." / "ganz", scratch / "ganz"});
            }).find("der Bestand selbst"),
            std::string::npos);
  EXPECT_EQ(Ask(scratch / "ganz", "SELECT count(*) FROM lauf"), "0\n");
}

}  // namespace
}  // namespace quillmate::inventory
