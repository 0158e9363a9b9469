#include <string>

#include <quillmate/files/paths.h>
#include <quillmate/inventory/merge.h>
#include <quillmate/inventory/reason.h>

#include "link_targets_p.h"
#include "schema_p.h"
#include "sqlite_p.h"

namespace quillmate::inventory {
namespace {

/// What took too long or crashed somewhere may have been read elsewhere.
constexpr const char* kFailed = "IN ('zeitlimit', 'abgestürzt')";

/// Numbers of the part's rows and what they are here. A content is `frisch` when its rows come from the part, and
/// `bekannt` when there are older ones of it here.
constexpr const char* kMaps = R"sql(
CREATE TEMP TABLE mlauf(alt INTEGER PRIMARY KEY, neu INTEGER NOT NULL);
CREATE TEMP TABLE mordner(alt INTEGER PRIMARY KEY, neu INTEGER NOT NULL);
CREATE TEMP TABLE minhalt(alt INTEGER PRIMARY KEY, neu INTEGER NOT NULL, frisch INTEGER NOT NULL,
  bekannt INTEGER NOT NULL, zustand TEXT NOT NULL);
)sql";

std::int64_t AskNumber(Database& database, const std::string& sql) {
  Statement ask(database, sql);
  return ask.Next() ? ask.Number() : 0;
}

std::string WithColumns(std::string_view columns, std::string_view prefix) {
  std::string text(prefix);
  for (std::size_t at = 0; at < columns.size(); ++at) {
    text += columns[at];
    if (columns[at] == ' ') text += prefix;
  }
  return text;
}

void TakeRuns(Database& database) {
  database.Run(R"sql(
INSERT OR IGNORE INTO main.lauf(kennung, begonnen, beendet, zustand, programm, quellen, anteil, dateien, gelesen,
  unveraendert, verschwunden, ausgelassen) SELECT kennung, begonnen, beendet, zustand, programm, quellen, anteil, dateien, gelesen,
  unveraendert, verschwunden, ausgelassen FROM teil.lauf ORDER BY begonnen, kennung;
INSERT INTO mlauf SELECT t.nr, l.nr FROM teil.lauf t JOIN main.lauf l ON l.kennung = t.kennung;
UPDATE main.lauf SET (beendet, zustand, dateien, gelesen, unveraendert, verschwunden) =
  (SELECT t.beendet, t.zustand, t.dateien, t.gelesen, t.unveraendert, t.verschwunden FROM teil.lauf t
   WHERE t.kennung = main.lauf.kennung)
  WHERE zustand = 'läuft' AND nr IN (SELECT neu FROM mlauf);
INSERT OR IGNORE INTO main.pruefung SELECT * FROM teil.pruefung;
)sql");
}

/// A folder that one part could list and another could not is one that can be listed.
void TakeFolders(Database& database) {
  database.Run(R"sql(
INSERT INTO main.ordner(pfad, lauf, grund) SELECT t.pfad, m.neu, t.grund FROM teil.ordner t
  LEFT JOIN mlauf m ON m.alt = t.lauf WHERE true
  ON CONFLICT(pfad) DO UPDATE SET grund = CASE WHEN lauf IS NULL AND excluded.lauf IS NOT NULL THEN excluded.grund
    WHEN excluded.lauf IS NULL THEN grund ELSE min(grund, excluded.grund) END, lauf = max(coalesce(lauf, excluded.lauf),
    coalesce(excluded.lauf, lauf));
INSERT INTO mordner SELECT t.nr, o.nr FROM teil.ordner t JOIN main.ordner o ON o.pfad = t.pfad;
)sql");
}

/// The rows of contents that were here before and are better in the part.
void ReplaceContents(Database& database) {
  constexpr std::string_view kReplaced = "(SELECT neu FROM minhalt WHERE frisch AND bekannt)";
  for (const ContentTable& table : kContentTables) {
    database.Run(
        ("DELETE FROM main." + std::string(table.name) + " WHERE inhalt IN " + std::string(kReplaced)).c_str());
  }
  const std::string columns = kContentColumns;
  database.Run(("UPDATE main.inhalt SET (" + columns + ") = (SELECT " + WithColumns(columns, "t.") +
                " FROM minhalt m JOIN teil.inhalt t ON t.nr = m.alt WHERE m.neu = main.inhalt.nr AND m.frisch) WHERE "
                "nr IN " +
                std::string(kReplaced) +
                // What was read in the meantime counts for all files of that content.
                "; UPDATE main.datei SET zustand = (SELECT zustand FROM main.inhalt WHERE nr = main.datei.inhalt) "
                "WHERE inhalt IN " +
                std::string(kReplaced))
                   .c_str());
}

void TakeContents(Database& database) {
  const std::string failed = kFailed;
  // Contents that are not here, or worse here than there. The new ones keep their order, so that their rows, which are
  // nearly all that there is to move, go to the end of each table without being sorted or looked up.
  const std::string better = "(t.fassung > i.fassung OR (t.fassung = i.fassung AND i.zustand " + failed +
                             " AND (t.zustand NOT " + failed + " OR (t.zustand, t.grund) < (i.zustand, i.grund))))";
  database.Run(("INSERT INTO minhalt SELECT t.nr, coalesce(i.nr, t.nr + (SELECT coalesce(max(nr), 0) FROM "
                "main.inhalt)), i.nr IS NULL OR " +
                better + ", i.nr IS NOT NULL, CASE WHEN i.nr IS NULL OR " + better +
                " THEN t.zustand ELSE i.zustand END FROM teil.inhalt t LEFT JOIN main.inhalt i ON i.pruefsumme = "
                "t.pruefsumme AND i.art = t.art")
                   .c_str());
  if (AskNumber(database, "SELECT EXISTS(SELECT 1 FROM minhalt WHERE frisch AND bekannt)") != 0) {
    ReplaceContents(database);
  }
  const std::string columns = kContentColumns;
  database.Run(("INSERT INTO main.inhalt(nr, " + columns + ") SELECT m.neu, " + WithColumns(columns, "t.") +
                " FROM minhalt m CROSS JOIN teil.inhalt t ON t.nr = m.alt WHERE NOT m.bekannt")
                   .c_str());
  for (const ContentTable& table : kContentTables) {
    database.Run(("INSERT INTO main." + std::string(table.name) + " SELECT m.neu, t.folge, " +
                  WithColumns(table.columns, "t.") + " FROM minhalt m CROSS JOIN teil." + table.name +
                  " t ON t.inhalt = m.alt WHERE m.frisch")
                     .c_str());
  }
}

/// Files that both know were met first in the earlier of both runs.
constexpr const char* kFirstMet = R"sql(
UPDATE main.datei SET erstmals = (SELECT e.neu FROM teil.datei t JOIN mordner o ON o.alt = t.ordner JOIN mlauf e ON
    e.alt = t.erstmals WHERE o.neu = main.datei.ordner AND t.name = main.datei.name)
  WHERE (ordner, name) IN (SELECT o.neu, t.name FROM teil.datei t JOIN mordner o ON o.alt = t.ordner JOIN mlauf e ON
    e.alt = t.erstmals JOIN main.lauf l ON l.nr = e.neu JOIN main.datei d ON d.ordner = o.neu AND d.name = t.name
    JOIN main.lauf k ON k.nr = d.erstmals WHERE (l.begonnen, l.kennung) < (k.begonnen, k.kennung));
)sql";

/// A file with a content is in its state, which may have been read better in another part.
void TakeFiles(Database& database) {
  const std::string last = "SELECT coalesce(max(nr), 0) FROM main.datei";
  const std::int64_t before = AskNumber(database, last);
  database.Run(R"sql(
INSERT INTO main.datei(ordner, name, groesse, zeit, inhalt, zustand, grund, erstmals, geaendert, verschwunden)
  SELECT o.neu, t.name, t.groesse, t.zeit, i.neu, coalesce(i.zustand, t.zustand), t.grund, e.neu, g.neu, v.neu
  FROM teil.datei t JOIN mordner o ON o.alt = t.ordner LEFT JOIN minhalt i ON i.alt = t.inhalt JOIN mlauf e ON
  e.alt = t.erstmals JOIN mlauf g ON g.alt = t.geaendert LEFT JOIN mlauf v ON v.alt = t.verschwunden WHERE true
  ORDER BY o.neu, t.name
  ON CONFLICT(ordner, name) DO UPDATE SET groesse = excluded.groesse, zeit = excluded.zeit, inhalt = excluded.inhalt,
    zustand = excluded.zustand, grund = excluded.grund, geaendert = excluded.geaendert,
    verschwunden = excluded.verschwunden
  WHERE (SELECT (begonnen, kennung) > (SELECT begonnen, kennung FROM main.lauf WHERE nr =
    coalesce(datei.verschwunden, datei.geaendert)) FROM main.lauf WHERE nr =
    coalesce(excluded.verschwunden, excluded.geaendert));
)sql");
  const bool allNew = AskNumber(database, last) - before == AskNumber(database, "SELECT count(*) FROM teil.datei");
  if (!allNew) database.Run(kFirstMet);
}

void MergePart(Database& database, const std::filesystem::path& part) {
  // Looked at by itself first: a file that is none must not be made by opening it.
  Database other(part, Database::Mode::kRead);
  CheckSchema(other);
  Statement attach(database, "ATTACH ? AS teil");
  const std::string path = files::PathText(files::AbsolutePath(part));
  attach.Add(path).Run();
  database.Run(kMaps);
  database.Run("BEGIN IMMEDIATE");
  TakeRuns(database);
  TakeFolders(database);
  TakeContents(database);
  TakeFiles(database);
  database.Run("COMMIT; DROP TABLE mlauf; DROP TABLE mordner; DROP TABLE minhalt");
  database.Run("DETACH teil");
}

std::uintmax_t BytesOf(const std::vector<std::filesystem::path>& files) {
  std::uintmax_t bytes = 0;
  for (const std::filesystem::path& file : files) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (!error) bytes += size;
  }
  return bytes;
}

}  // namespace

void Merge(const std::filesystem::path& database, const std::vector<std::filesystem::path>& parts,
           const std::function<void(const std::filesystem::path&)>& done) {
  for (const std::filesystem::path& part : parts) {
    std::error_code error;
    if (std::filesystem::equivalent(database, part, error)) throw files::Failure(InventoryReason::kIsTarget, part);
  }
  Database whole(NoSource(database), Database::Mode::kCreate);
  PrepareSchema(whole);
  // Where the parts bring more than there is, an index is made faster as a whole than row by row.
  if (BytesOf(parts) > BytesOf({database})) DropIndexes(whole);
  for (const std::filesystem::path& part : parts) {
    MergePart(whole, part);
    if (done) done(part);
  }
  MakeIndexes(whole);
  whole.Run("BEGIN IMMEDIATE");
  FindTargets(whole);
  whole.Run("COMMIT");
  // Takes the emptied journal away.
  whole.Run("PRAGMA journal_mode=DELETE");
}

}  // namespace quillmate::inventory
