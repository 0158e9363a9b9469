#include <quillmate/inventory/inventory.h>
#include <quillmate/text/operations.h>

#include "inventory_state_p.h"

namespace quillmate::inventory {
namespace {

struct Table {
  std::string_view key, title;
  /// Separated by commas, as many as the query has columns; the query gives them their names in data.
  std::string_view heads;
  const char* sql;
};

constexpr Table kTables[] = {
    {"files", "Dateien",
     "Datei,Zustand,Grund,Art,Projekt,Schutz,Signiert,Signiert von,Module,Routinen,Codezeilen,Befunde,Gleiche "
     "Dateien,Autor,Zuletzt "
     "von,Firma,Erstellt,Gespeichert,Größe,Zeit",
     "SELECT pfad AS path, zustand AS state, grund AS reason, format, projekt AS project, schutz AS protection, "
     "signiert AS signed, unterzeichner AS signer, module AS modules, routinen AS routines, codezeilen AS code_lines, "
     "befunde AS findings, "
     "(SELECT count(*) FROM datei k WHERE k.inhalt = v.inhalt AND k.verschwunden IS NULL) AS copies, autor AS author, "
     "zuletzt_von AS last_author, firma AS company, erstellt AS created, gespeichert AS saved, groesse AS size, zeit "
     "AS time FROM v_datei v ORDER BY pfad"},
    {"findings", "Befunde", "Datei,Gruppe,Stufe,Prüfung,Modul,Routine,Zeile,Befund",
     "SELECT pfad AS path, gruppe AS \"group\", stufe AS severity, pruefung AS id, modulname AS module, routine, zeile "
     "AS line, text FROM v_befund WHERE gruppe <> '64 Bit'"},
    {"bits64", "64 Bit", "Datei,Stufe,Prüfung,Modul,Routine,Zeile,Befund",
     "SELECT pfad AS path, stufe AS severity, pruefung AS id, modulname AS module, routine, zeile AS line, text FROM "
     "v_64bit"},
    {"duplicates", "Doppelt", "Datei,Gleiche Dateien,Nur Kopien",
     "SELECT v.pfad AS path, coalesce(k.anzahl, 1) AS copies, v.inhalt IN (SELECT inhalt FROM v_nur_kopien) AS "
     "only_copies FROM v_datei v LEFT JOIN v_kopie k ON k.pfad = v.pfad WHERE v.zustand = 'makros' AND (k.anzahl IS "
     "NOT NULL OR v.inhalt IN (SELECT inhalt FROM v_nur_kopien)) ORDER BY v.inhalt, v.pfad"},
    {"unread", "Unlesbar", "Datei,Zustand,Grund",
     "SELECT pfad AS path, zustand AS state, grund AS reason FROM v_ungelesen ORDER BY zustand, pfad"},
    {"starts", "Selbststart", "Datei,Routine,Zeile,Befund",
     "SELECT pfad AS path, routine, zeile AS line, text FROM v_selbststart ORDER BY pfad"},
    {"outside", "Außen", "Datei,Prüfung,Titel,Anzahl",
     "SELECT pfad AS path, pruefung AS id, titel AS title, anzahl AS count FROM v_aussen ORDER BY pfad, pruefung"},
    {"dead_links", "Tote Verknüpfungen", "Datei,Art,Ziel,Befund",
     "SELECT datei AS path, art AS kind, ziel AS target, befund AS state FROM v_tote_verknuepfung ORDER BY datei, "
     "ziel"},
    {"broken_references", "Kaputte Verweise", "Datei,Verweis,Version,Pfad,Befund",
     "SELECT datei AS path, name, version, pfad AS target, grund AS state FROM v_kaputter_verweis ORDER BY datei, "
     "name"},
    {"signatures", "Signaturen", "Datei,Signiert von,Ausgestellt von,Gültig von,Gültig bis",
     "SELECT pfad AS path, unterzeichner AS signer, aussteller AS issuer, gueltig_von AS valid_from, gueltig_bis AS "
     "valid_until FROM v_signatur ORDER BY pfad"},
    {"runs", "Läufe", "Lauf,Begonnen,Beendet,Zustand,Programm,Quellen,Anteil,Dateien,Gelesen,Unverändert,Verschwunden",
     "SELECT nr AS run, begonnen AS began, coalesce(beendet, '') AS ended, zustand AS state, programm AS program, "
     "quellen AS roots, anteil AS shard, dateien AS files, gelesen AS read, unveraendert AS unchanged, verschwunden AS "
     "vanished FROM lauf ORDER BY nr"},
};

constexpr Table kChanges[] = {
    {"changes", "Änderungen", "Änderung,Datei,Zustand,Grund,Art,Codezeilen,Befunde",
     "SELECT CASE WHEN d.verschwunden IS NOT NULL THEN 'verschwunden' WHEN d.erstmals > ?1 THEN 'neu' ELSE 'geändert' "
     "END AS change, rtrim(o.pfad, '/\\') || CASE WHEN instr(o.pfad, '/') > 0 THEN '/' ELSE '\\' END || d.name AS "
     "path, d.zustand AS state, CASE WHEN d.grund <> '' THEN d.grund ELSE coalesce(i.grund, '') END AS reason, "
     "i.format, i.codezeilen AS code_lines, i.befunde AS findings FROM datei d JOIN ordner o ON o.nr = d.ordner LEFT "
     "JOIN inhalt i ON i.nr = d.inhalt WHERE d.zustand <> 'fremd' AND (d.verschwunden > ?1 OR (d.verschwunden IS NULL "
     "AND d.geaendert > ?1)) ORDER BY 1, 2"}};

const Table& At(std::size_t table, std::int64_t since) { return since > 0 ? kChanges[table] : kTables[table]; }

}  // namespace

std::size_t Inventory::TableCount(std::int64_t since) noexcept {
  return since > 0 ? std::size(kChanges) : std::size(kTables);
}

ReportTable Inventory::TableAt(std::size_t table, std::int64_t since) {
  const Table& each = At(table, since);
  ReportTable result{each.key, each.title, {}, {}};
  for (const std::string_view head : text::Split(each.heads, ",")) result.heads.emplace_back(head);
  Statement ask(state_->database, each.sql);
  for (int i = 0; i < ask.Columns(); ++i) result.keys.push_back(ask.ColumnName(i));
  return result;
}

void Inventory::ForEachRow(std::size_t table, std::int64_t since,
                           const std::function<void(std::span<const Cell>)>& take) {
  Statement ask(state_->database, At(table, since).sql);
  if (since > 0) ask.Add(since);
  std::vector<Cell> row(static_cast<std::size_t>(ask.Columns()));
  while (ask.Next()) {
    for (Cell& cell : row) {
      cell.isNumber = ask.IsNumber();
      if (cell.isNumber) {
        cell.number = ask.Number();
        cell.text = {};
      } else {
        cell.text = ask.TextView();
      }
    }
    take(row);
  }
}

}  // namespace quillmate::inventory
