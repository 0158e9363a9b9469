#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/files/paths.h>
#include <quillmate/inventory/reason.h>
#include <quillmate/inventory/schema.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/office_file.h>
#include <quillmate/text/operations.h>

#include "schema_p.h"

namespace quillmate::inventory {
namespace {

/// "QmBe"
constexpr std::int64_t kApplication = 0x516D4265;

constexpr const char* kTables = R"sql(
CREATE TABLE lauf(nr INTEGER PRIMARY KEY, kennung TEXT NOT NULL UNIQUE, begonnen TEXT NOT NULL, beendet TEXT,
  zustand TEXT NOT NULL, programm TEXT NOT NULL, quellen TEXT NOT NULL, anteil TEXT NOT NULL,
  dateien INTEGER NOT NULL DEFAULT 0, gelesen INTEGER NOT NULL DEFAULT 0, unveraendert INTEGER NOT NULL DEFAULT 0,
  verschwunden INTEGER NOT NULL DEFAULT 0, ausgelassen TEXT NOT NULL DEFAULT '');
CREATE TABLE ordner(nr INTEGER PRIMARY KEY, pfad TEXT NOT NULL UNIQUE, lauf INTEGER REFERENCES lauf,
  grund TEXT NOT NULL DEFAULT '');
CREATE TABLE inhalt(nr INTEGER PRIMARY KEY, pruefsumme TEXT NOT NULL, art TEXT NOT NULL, fassung INTEGER NOT NULL,
  groesse INTEGER NOT NULL, zustand TEXT NOT NULL, grund TEXT NOT NULL, format TEXT NOT NULL,
  codepage INTEGER NOT NULL, projekt TEXT NOT NULL, schutz TEXT NOT NULL, signiert INTEGER, titel TEXT NOT NULL,
  autor TEXT NOT NULL, zuletzt_von TEXT NOT NULL, firma TEXT NOT NULL, programm TEXT NOT NULL, erstellt TEXT NOT NULL,
  gespeichert TEXT NOT NULL, excel4 INTEGER NOT NULL, ersetzt INTEGER NOT NULL, module INTEGER NOT NULL,
  routinen INTEGER NOT NULL, zeilen INTEGER NOT NULL, codezeilen INTEGER NOT NULL, befunde INTEGER NOT NULL,
  unterzeichner TEXT NOT NULL DEFAULT '', aussteller TEXT NOT NULL DEFAULT '', gueltig_von TEXT NOT NULL DEFAULT '',
  gueltig_bis TEXT NOT NULL DEFAULT '', UNIQUE(pruefsumme, art));
CREATE TABLE datei(nr INTEGER PRIMARY KEY, ordner INTEGER NOT NULL REFERENCES ordner, name TEXT NOT NULL,
  groesse INTEGER NOT NULL, zeit INTEGER NOT NULL, inhalt INTEGER REFERENCES inhalt, zustand TEXT NOT NULL,
  grund TEXT NOT NULL, erstmals INTEGER NOT NULL REFERENCES lauf, geaendert INTEGER NOT NULL REFERENCES lauf,
  verschwunden INTEGER REFERENCES lauf, UNIQUE(ordner, name));
CREATE TABLE modul(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, name TEXT NOT NULL,
  art TEXT NOT NULL, zeilen INTEGER NOT NULL, codezeilen INTEGER NOT NULL, kommentarzeilen INTEGER NOT NULL,
  pruefsumme INTEGER, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE routine(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, modul INTEGER NOT NULL,
  name TEXT NOT NULL, art TEXT NOT NULL, sichtbarkeit TEXT NOT NULL, signatur TEXT NOT NULL, zeile INTEGER NOT NULL,
  zeilen INTEGER NOT NULL, anweisungen INTEGER NOT NULL, komplexitaet INTEGER NOT NULL, tiefe INTEGER NOT NULL,
  parameter INTEGER NOT NULL, pruefsumme INTEGER, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE verweis(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, name TEXT NOT NULL,
  version TEXT NOT NULL, pfad TEXT NOT NULL, projekt INTEGER NOT NULL, dateiname TEXT NOT NULL,
  bruch TEXT NOT NULL DEFAULT '', PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE verknuepfung(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, art TEXT NOT NULL,
  ziel TEXT NOT NULL, dateiname TEXT NOT NULL, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE bindung(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, art TEXT NOT NULL,
  modul TEXT NOT NULL, ziel TEXT NOT NULL, ort TEXT NOT NULL, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE befund(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL,
  pruefung TEXT NOT NULL REFERENCES pruefung, modul INTEGER NOT NULL, routine TEXT NOT NULL, zeile INTEGER NOT NULL,
  spalte INTEGER NOT NULL, text TEXT NOT NULL, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE befundzahl(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL,
  pruefung TEXT NOT NULL REFERENCES pruefung, anzahl INTEGER NOT NULL, PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE api(inhalt INTEGER NOT NULL REFERENCES inhalt, folge INTEGER NOT NULL, modul INTEGER NOT NULL,
  name TEXT NOT NULL, bibliothek TEXT NOT NULL, alias TEXT NOT NULL, ptrsafe INTEGER NOT NULL, zeile INTEGER NOT NULL,
  PRIMARY KEY(inhalt, folge)) WITHOUT ROWID;
CREATE TABLE zieldatei(datei INTEGER NOT NULL REFERENCES datei, folge INTEGER NOT NULL, art TEXT NOT NULL,
  ziel TEXT NOT NULL, pfad TEXT NOT NULL, befund TEXT NOT NULL, ist INTEGER REFERENCES datei,
  PRIMARY KEY(datei, folge)) WITHOUT ROWID;
CREATE TABLE pruefung(kennung TEXT PRIMARY KEY, gruppe TEXT NOT NULL, stufe TEXT NOT NULL, titel TEXT NOT NULL)
  WITHOUT ROWID;
)sql";

/// Those that no statement needs to be right.
constexpr const char* kIndexes = R"sql(
DROP INDEX IF EXISTS datei_inhalt;
CREATE INDEX IF NOT EXISTS datei_da ON datei(inhalt) WHERE inhalt IS NOT NULL AND verschwunden IS NULL;
CREATE INDEX IF NOT EXISTS verweis_bruch ON verweis(inhalt) WHERE bruch <> '';
CREATE INDEX IF NOT EXISTS modul_pruefsumme ON modul(pruefsumme) WHERE pruefsumme IS NOT NULL;
CREATE INDEX IF NOT EXISTS zieldatei_ist ON zieldatei(ist) WHERE ist IS NOT NULL;
)sql";

constexpr const char* kViews = R"sql(
CREATE VIEW v_datei AS SELECT d.nr, rtrim(o.pfad, '/\') ||
  CASE WHEN instr(o.pfad, '/') > 0 THEN '/' ELSE '\' END || d.name AS pfad,
  d.groesse, datetime(d.zeit / 1000000000, 'unixepoch') AS zeit, d.zustand,
  CASE WHEN d.grund <> '' THEN d.grund ELSE coalesce(i.grund, '') END AS grund, i.nr AS inhalt, i.pruefsumme, i.format,
  CASE WHEN i.format = 'modul' THEN coalesce((SELECT p.projekt FROM zieldatei z JOIN datei e ON e.nr = z.datei JOIN
  inhalt p ON p.nr = e.inhalt WHERE z.ist = d.nr AND z.art = 'modul' LIMIT 1), '') ELSE i.projekt END AS projekt,
  i.schutz, i.signiert, i.unterzeichner, i.aussteller, i.gueltig_von, i.gueltig_bis, i.module, i.routinen, i.zeilen, i.codezeilen, i.befunde, i.titel, i.autor,
  i.zuletzt_von, i.firma, i.erstellt, i.gespeichert, i.excel4, i.codepage, d.erstmals, d.geaendert
  FROM datei d JOIN ordner o ON o.nr = d.ordner LEFT JOIN inhalt i ON i.nr = d.inhalt
  WHERE d.verschwunden IS NULL AND d.zustand <> 'fremd';
CREATE VIEW v_makros AS SELECT * FROM v_datei WHERE zustand = 'makros';
CREATE VIEW v_ungelesen AS SELECT pfad, zustand, grund FROM v_datei
  WHERE zustand IN ('gesperrt', 'verschlüsselt', 'kompiliert', 'beschädigt', 'zeitlimit', 'abgestürzt', 'unlesbar')
  UNION ALL SELECT pfad, 'unlesbar', grund FROM ordner WHERE grund <> '';
CREATE VIEW v_modul AS SELECT v.pfad, m.* FROM modul m JOIN v_datei v ON v.inhalt = m.inhalt;
CREATE VIEW v_routine AS SELECT v.pfad, m.name AS modulname, r.* FROM routine r JOIN v_datei v ON v.inhalt = r.inhalt
  JOIN modul m ON m.inhalt = r.inhalt AND m.folge = r.modul;
CREATE VIEW v_befund AS SELECT v.pfad, p.gruppe, p.stufe, b.pruefung, m.name AS modulname, b.routine, b.zeile,
  b.spalte, b.text FROM befund b JOIN v_datei v ON v.inhalt = b.inhalt JOIN pruefung p ON p.kennung = b.pruefung
  LEFT JOIN modul m ON m.inhalt = b.inhalt AND m.folge = b.modul;
CREATE VIEW v_64bit AS SELECT * FROM v_befund WHERE gruppe = '64 Bit';
CREATE VIEW v_selbststart AS SELECT v.pfad, b.modul AS modulnummer, b.routine, b.zeile, b.text FROM befund b
  JOIN v_datei v ON v.inhalt = b.inhalt WHERE b.pruefung = 'start-von-selbst';
CREATE VIEW v_aussen AS SELECT v.pfad, z.pruefung, p.titel, z.anzahl FROM befundzahl z JOIN v_datei v
  ON v.inhalt = z.inhalt JOIN pruefung p ON p.kennung = z.pruefung WHERE z.pruefung LIKE 'aussen-%';
CREATE VIEW v_kopie AS SELECT v.pfad, v.inhalt, k.anzahl FROM v_datei v JOIN (SELECT inhalt, count(*) AS anzahl
  FROM datei WHERE verschwunden IS NULL AND inhalt IS NOT NULL GROUP BY inhalt HAVING count(*) > 1) k
  ON k.inhalt = v.inhalt WHERE v.zustand = 'makros';
CREATE VIEW v_nur_kopien AS SELECT v.pfad, v.inhalt FROM v_datei v WHERE v.zustand = 'makros' AND v.codezeilen > 0
  AND v.inhalt NOT IN (SELECT m.inhalt FROM modul m WHERE m.pruefsumme IN (SELECT pruefsumme FROM modul
  WHERE pruefsumme IS NOT NULL GROUP BY pruefsumme HAVING min(inhalt) = max(inhalt)));
CREATE VIEW v_signatur AS SELECT pfad, unterzeichner, aussteller, gueltig_von, gueltig_bis FROM v_datei
  WHERE signiert <> 0;
CREATE VIEW v_verweis AS SELECT v.pfad AS datei, r.* FROM verweis r JOIN v_datei v ON v.inhalt = r.inhalt;
CREATE VIEW v_verknuepfung AS SELECT v.pfad AS datei, z.art, z.ziel, z.pfad, z.befund, z.datei AS nr FROM zieldatei z
  JOIN v_datei v ON v.nr = z.datei;
CREATE VIEW v_tote_verknuepfung AS SELECT * FROM v_verknuepfung WHERE befund IN ('nicht da', 'nicht im Bestand');
CREATE VIEW v_projektmodul AS SELECT v.pfad AS projektdatei, v.projekt, z.ziel, m.pfad AS modul, z.befund FROM
  zieldatei z JOIN v_datei v ON v.nr = z.datei LEFT JOIN v_datei m ON m.nr = z.ist WHERE z.art = 'modul';
CREATE VIEW v_kaputter_verweis AS SELECT v.pfad AS datei, r.name, r.version, r.pfad, r.bruch AS grund, v.nr FROM
  verweis r JOIN v_datei v ON v.inhalt = r.inhalt WHERE r.bruch <> ''
  UNION ALL SELECT v.pfad, r.name, r.version, r.pfad, z.befund, v.nr FROM zieldatei z JOIN v_datei v ON v.nr = z.datei
  JOIN verweis r ON r.inhalt = v.inhalt AND r.pfad = z.ziel WHERE z.art IN ('verweis', 'bibliothek') AND z.befund IN
  ('nicht da', 'nicht im Bestand');
CREATE VIEW v_api AS SELECT v.pfad, m.name AS modulname, a.name, a.bibliothek, a.alias, a.ptrsafe, a.zeile FROM api a
  JOIN v_datei v ON v.inhalt = a.inhalt LEFT JOIN modul m ON m.inhalt = a.inhalt AND m.folge = a.modul;
CREATE VIEW v_autor AS SELECT autor, count(*) AS dateien, sum(codezeilen) AS codezeilen FROM v_datei
  WHERE zustand = 'makros' GROUP BY autor ORDER BY dateien DESC, autor;
)sql";

/// From each version to the next one.
constexpr const char* kSteps[] = {R"sql(
ALTER TABLE lauf ADD COLUMN ausgelassen TEXT NOT NULL DEFAULT '';
ALTER TABLE inhalt ADD COLUMN unterzeichner TEXT NOT NULL DEFAULT '';
ALTER TABLE inhalt ADD COLUMN aussteller TEXT NOT NULL DEFAULT '';
ALTER TABLE inhalt ADD COLUMN gueltig_von TEXT NOT NULL DEFAULT '';
ALTER TABLE inhalt ADD COLUMN gueltig_bis TEXT NOT NULL DEFAULT '';
ALTER TABLE verweis ADD COLUMN bruch TEXT NOT NULL DEFAULT '';
UPDATE datei SET zeit = 0 WHERE zustand = 'fremd' AND lower(name) LIKE '%.vbp';
CREATE TABLE zieldatei(datei INTEGER NOT NULL REFERENCES datei, folge INTEGER NOT NULL, art TEXT NOT NULL,
  ziel TEXT NOT NULL, pfad TEXT NOT NULL, befund TEXT NOT NULL, ist INTEGER REFERENCES datei,
  PRIMARY KEY(datei, folge)) WITHOUT ROWID;
)sql"};
static_assert(std::size(kSteps) == kSchemaVersion - 1);

std::int64_t Ask(Database& database, const char* sql) {
  Statement statement(database, sql);
  return statement.Next() ? statement.Number() : 0;
}

void WriteChecks(Database& database) {
  Statement insert(database, "INSERT OR REPLACE INTO pruefung VALUES(?,?,?,?)");
  for (const checks::Check& check : checks::AllChecks()) {
    insert.Add(check.id).Add(checks::Word(check.group)).Add(checks::Word(check.severity)).Add(check.title).Run();
  }
}

/// The version of the tables; 0 for an empty file.
std::int64_t VersionOf(Database& database) {
  const std::int64_t application = Ask(database, "PRAGMA application_id");
  const std::int64_t version = Ask(database, "PRAGMA user_version");
  if (application == 0 && version == 0 && Ask(database, "SELECT count(*) FROM sqlite_master") == 0) return 0;
  if (application != kApplication) throw files::Failure(InventoryReason::kNoInventory, database.File());
  if (version < 1 || version > kSchemaVersion) throw files::Failure(InventoryReason::kNewer, database.File());
  return version;
}

void DropViews(Database& database) {
  std::vector<std::string> names;
  Statement ask(database, "SELECT name FROM sqlite_master WHERE type = 'view' AND name GLOB 'v_[a-z0-9]*'");
  while (ask.Next()) names.push_back(ask.Text());
  for (const std::string& name : names) {
    // Names of ours need no quotes; others are not ours.
    if (name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") != std::string::npos) continue;
    database.Run(("DROP VIEW " + name).c_str());
  }
}

}  // namespace

const ContentTable kContentTables[8] = {
    {"modul", "name, art, zeilen, codezeilen, kommentarzeilen, pruefsumme"},
    {"routine",
     "modul, name, art, sichtbarkeit, signatur, zeile, zeilen, anweisungen, komplexitaet, tiefe, parameter, "
     "pruefsumme"},
    {"verweis", "name, version, pfad, projekt, dateiname, bruch"},
    {"verknuepfung", "art, ziel, dateiname"},
    {"bindung", "art, modul, ziel, ort"},
    {"befund", "pruefung, modul, routine, zeile, spalte, text"},
    {"befundzahl", "pruefung, anzahl"},
    {"api", "modul, name, bibliothek, alias, ptrsafe, zeile"},
};

const char* const kContentColumns =
    "pruefsumme, art, fassung, groesse, zustand, grund, format, codepage, projekt, schutz, signiert, titel, autor, "
    "zuletzt_von, firma, programm, erstellt, gespeichert, excel4, ersetzt, module, routinen, zeilen, codezeilen, "
    "befunde, unterzeichner, aussteller, gueltig_von, gueltig_bis";

const std::filesystem::path& NoSource(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::file_size(file, error) != 0 || error) return file;
  const std::string extension = files::PathText(file.extension());
  const auto isOffice = [&](std::string_view known) {
    return !extension.empty() && text::EqualsIgnoreCase(known, std::string_view(extension).substr(1));
  };
  if (office::IsModuleFileExtension(extension) || std::ranges::any_of(office::OfficeFileExtensions(), isOffice)) {
    throw files::Failure(InventoryReason::kNoInventory, file);
  }
  return file;
}

void PrepareSchema(Database& database) {
  // What doesn't fit into the cache while it is sorted goes to temporary files.
  database.Run(
      "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=TRUNCATE; PRAGMA synchronous=NORMAL;"
      "PRAGMA temp_store=FILE");
  const std::int64_t version = VersionOf(database);
  // Fewer, larger pages: most rows are added at the end.
  if (version == 0) database.Run("PRAGMA page_size=16384");
  // Only now: the limit is kept as a number of pages, which stays when they become larger.
  database.Run("PRAGMA cache_size=-32768");
  database.Run("BEGIN IMMEDIATE");
  if (version == 0) database.Run(kTables);
  if (version < kSchemaVersion) {
    if (version > 0) {
      DropViews(database);
      for (std::size_t step = static_cast<std::size_t>(version); step < kSchemaVersion; ++step) {
        database.Run(kSteps[step - 1]);
      }
    }
    database.Run(kViews);
    database.Run(("PRAGMA application_id=" + std::to_string(kApplication) +
                  "; PRAGMA user_version=" + std::to_string(kSchemaVersion))
                     .c_str());
  }
  database.Run(kIndexes);
  WriteChecks(database);
  database.Run("COMMIT");
}

void MakeIndexes(Database& database) { database.Run(kIndexes); }

void DropIndexes(Database& database) {
  database.Run(
      "DROP INDEX IF EXISTS datei_da; DROP INDEX IF EXISTS verweis_bruch; DROP INDEX IF EXISTS modul_pruefsumme; DROP "
      "INDEX IF EXISTS zieldatei_ist");
}

void CheckSchema(Database& database) {
  const std::int64_t version = VersionOf(database);
  if (version == 0) throw files::Failure(InventoryReason::kNoInventory, database.File());
  if (version < kSchemaVersion) throw files::Failure(InventoryReason::kOlder, database.File());
}

}  // namespace quillmate::inventory
