#include <array>
#include <fstream>

#include <quillmate/inventory/inventory.h>
#include <quillmate/text/operations.h>

#include "inventory_state_p.h"
#include "path_text_p.h"

namespace quillmate::inventory {
namespace {

struct QuestionRow {
  std::string_view title;
  /// What holds of a row of v_datei, as d.
  const char* condition;
};

constexpr std::array<QuestionRow, kQuestionCount> kQuestions{{
    {"Alle Dateien", "1"},
    {"Dateien mit Makros", "d.zustand = 'makros'"},
    {"Liegen mehrfach da", "d.nr IN (SELECT k.nr FROM v_datei k WHERE k.inhalt IN (SELECT inhalt FROM v_kopie))"},
    {"Enthalten nur, was auch anderswo liegt", "d.inhalt IN (SELECT inhalt FROM v_nur_kopien)"},
    {"Laufen nicht unter 64 Bit",
     "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung IN (SELECT kennung FROM pruefung WHERE gruppe = '64 "
     "Bit'))"},
    {"Starten von selbst", "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung = 'start-von-selbst')"},
    {"Greifen auf Datenbanken zu", "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung = 'aussen-datenbank')"},
    {"Greifen auf das Netz zu",
     "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung IN ('aussen-netz', 'aussen-mail'))"},
    {"Greifen auf die Registrierung zu",
     "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung = 'aussen-registrierung')"},
    {"Starten oder steuern andere Programme",
     "d.inhalt IN (SELECT inhalt FROM befundzahl WHERE pruefung IN ('aussen-programm', 'aussen-office', "
     "'aussen-tasten'))"},
    {"Verweisen auf Dateien, die es nicht gibt",
     "d.nr IN (SELECT datei FROM zieldatei WHERE befund IN ('nicht da', 'nicht im Bestand'))"},
    {"Haben kaputte Verweise", "d.nr IN (SELECT nr FROM v_kaputter_verweis)"},
    {"Sind signiert", "d.signiert <> 0"},
    {"Konnten nicht gelesen werden",
     "d.zustand IN ('gesperrt', 'verschlüsselt', 'kompiliert', 'beschädigt', 'zeitlimit', 'abgestürzt', 'unlesbar')"},
}};

/// Bound values: 1 the state, 2 a pattern of LIKE.
std::string Where(const FileFilter& filter) {
  std::string where = " WHERE " + std::string(kQuestions[static_cast<std::size_t>(filter.question)].condition);
  where += " AND (?1 = '' OR d.zustand = ?1)";
  if (!filter.text.empty()) {
    where += " AND (d.pfad LIKE ?2 ESCAPE '\\' OR d.projekt LIKE ?2 ESCAPE '\\' OR d.autor LIKE ?2 ESCAPE '\\')";
  }
  return where;
}

std::string LikePattern(std::string_view text) {
  std::string pattern = "%";
  for (const char c : text) {
    if (c == '%' || c == '_' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern + "%";
}

struct DetailTable {
  const char* title;
  const char* heads;
  const char* sql;
};
constexpr DetailTable kDetails[] = {
    {"Module", "Modul,Art,Zeilen,Codezeilen",
     "SELECT name, art, zeilen, codezeilen FROM modul WHERE inhalt = ?1 AND ?2 ORDER BY folge"},
    {"Befunde", "Stufe,Prüfung,Modul,Routine,Zeile,Befund",
     "SELECT p.stufe, b.pruefung, m.name, b.routine, b.zeile, b.text FROM befund b JOIN pruefung p ON p.kennung = "
     "b.pruefung LEFT JOIN modul m ON m.inhalt = b.inhalt AND m.folge = b.modul WHERE b.inhalt = ?1 AND ?2 ORDER BY "
     "b.folge"},
    {"Verweise", "Name,Version,Pfad,Befund",
     "SELECT r.name, r.version, r.pfad, CASE WHEN r.bruch <> '' THEN r.bruch ELSE coalesce((SELECT z.befund FROM "
     "zieldatei z WHERE z.datei = ?2 AND z.ziel = r.pfad AND z.art IN ('verweis', 'bibliothek')), '') END FROM verweis "
     "r WHERE r.inhalt = ?1 ORDER BY r.folge"},
    {"Verknüpfungen", "Art,Ziel,Befund",
     "SELECT k.art, k.ziel, coalesce(z.befund, '') FROM verknuepfung k LEFT JOIN zieldatei z ON z.datei = ?2 AND "
     "z.folge = k.folge WHERE k.inhalt = ?1 ORDER BY k.folge"},
    {"Aufrufe von außen", "Art,Makro,Ort",
     "SELECT art, ziel, ort FROM bindung WHERE inhalt = ?1 AND ?2 ORDER BY folge"},
    {"Deklarationen von Bibliotheken", "Name,Bibliothek,PtrSafe,Zeile",
     "SELECT name, bibliothek, CASE ptrsafe WHEN 0 THEN 'nein' ELSE 'ja' END, zeile FROM api WHERE inhalt = ?1 AND ?2 "
     "ORDER BY "
     "folge"},
};

constexpr const char* kPropertyNames[] = {"Datei",
                                          "Zustand",
                                          "Grund",
                                          "Art",
                                          "Projekt",
                                          "Schutz",
                                          "Signatur",
                                          "Signiert von",
                                          "Zertifikat ausgestellt von",
                                          "Zertifikat gültig von",
                                          "Zertifikat gültig bis",
                                          "Titel",
                                          "Autor",
                                          "Zuletzt von",
                                          "Firma",
                                          "Erstellt",
                                          "Gespeichert",
                                          "Größe",
                                          "Zeit",
                                          "SHA-256"};

}  // namespace

std::string_view TitleOf(Question question) noexcept { return kQuestions[static_cast<std::size_t>(question)].title; }

Inventory::Inventory(const std::filesystem::path& file) : state_(std::make_unique<State>(file)) {}
Inventory::~Inventory() = default;

bool Inventory::IsInventory(const std::filesystem::path& file) noexcept try {
  constexpr std::size_t kApplicationAt = 68;
  std::ifstream in(file, std::ios::binary);
  std::array<char, kApplicationAt + 4> head{};
  in.read(head.data(), head.size());
  return in.gcount() == static_cast<std::streamsize>(head.size()) &&
         std::string_view(head.data(), 15) == "SQLite format 3" &&
         std::string_view(head.data() + kApplicationAt, 4) == "QmBe";
} catch (...) {
  return false;
}

std::vector<FileLine> Inventory::Files(const FileFilter& filter, std::int64_t limit, std::int64_t offset) {
  Statement ask(state_->database,
                "SELECT d.nr, d.pfad, d.zustand, d.grund, d.format, d.projekt, d.autor, d.groesse, d.zeit, d.module, "
                "d.zeilen, d.befunde, (SELECT count(*) FROM datei k WHERE k.inhalt = d.inhalt AND k.verschwunden IS "
                "NULL) FROM v_datei d" +
                    Where(filter) + " ORDER BY d.pfad LIMIT ?3 OFFSET ?4");
  const std::string pattern = LikePattern(filter.text);
  ask.Add(filter.state ? Word(*filter.state) : std::string_view()).Add(pattern).Add(limit).Add(offset);
  std::vector<FileLine> lines;
  while (ask.Next()) {
    FileLine& line = lines.emplace_back();
    line.number = ask.Number();
    line.path = ask.Text();
    line.state = StateFromWord(ask.TextView()).value_or(inventory::State::kUnreadable);
    line.reason = ask.Text();
    line.format = ask.Text();
    line.project = ask.Text();
    line.author = ask.Text();
    line.size = ask.Number();
    line.time = ask.Text();
    line.modules = ask.Number();
    line.lines = ask.Number();
    line.findings = ask.Number();
    line.copies = ask.Number();
  }
  return lines;
}

std::int64_t Inventory::Count(const FileFilter& filter) {
  Statement ask(state_->database, "SELECT count(*) FROM v_datei d" + Where(filter) + " AND ?2 <> ''");
  const std::string pattern = LikePattern(filter.text);
  ask.Add(filter.state ? Word(*filter.state) : std::string_view()).Add(pattern);
  return ask.Next() ? ask.Number() : 0;
}

FileDetails Inventory::DetailsOf(std::int64_t file) {
  FileDetails details;
  Statement ask(state_->database,
                "SELECT inhalt, pfad, zustand, grund, format, projekt, schutz, CASE signiert WHEN 1 THEN 'vorhanden, "
                "nicht geprüft' WHEN 0 THEN 'keine' END, unterzeichner, aussteller, gueltig_von, gueltig_bis, titel, "
                "autor, zuletzt_von, firma, erstellt, gespeichert, "
                "groesse, zeit, pruefsumme FROM v_datei WHERE nr = ?");
  ask.Add(file);
  if (!ask.Next()) return details;
  const bool hasContent = !ask.IsNull();
  const std::int64_t content = ask.Number();
  for (const char* const name : kPropertyNames) {
    std::string value = ask.Text();
    if (!value.empty()) details.properties.emplace_back(name, std::move(value));
  }
  ask.Reset();
  if (!hasContent) return details;
  for (const DetailTable& each : kDetails) {
    FileDetails::Table table{each.title, {}, {}};
    for (const std::string_view head : text::Split(each.heads, ",")) table.heads.emplace_back(head);
    Statement rows(state_->database, each.sql);
    rows.Add(content).Add(file);
    while (rows.Next()) {
      auto& row = table.rows.emplace_back();
      for (std::size_t i = 0; i < table.heads.size(); ++i) row.push_back(rows.Text());
    }
    if (!table.rows.empty()) details.tables.push_back(std::move(table));
  }
  return details;
}

std::filesystem::path Inventory::PathOf(std::int64_t file) {
  Statement ask(state_->database, "SELECT pfad FROM v_datei WHERE nr = ?");
  ask.Add(file);
  return ask.Next() ? PathOfStored(ask.TextView()) : std::filesystem::path();
}

std::vector<RunLine> Inventory::Runs() {
  Statement ask(state_->database,
                "SELECT nr, begonnen, beendet, zustand, quellen, anteil, dateien, gelesen, unveraendert, verschwunden "
                "FROM lauf ORDER BY nr");
  std::vector<RunLine> runs;
  while (ask.Next()) {
    RunLine& run = runs.emplace_back();
    run.number = ask.Number();
    run.began = ask.Text();
    run.ended = ask.Text();
    run.state = ask.Text();
    run.roots = ask.Text();
    run.shard = ask.Text();
    run.files = ask.Number();
    run.read = ask.Number();
    run.unchanged = ask.Number();
    run.vanished = ask.Number();
  }
  return runs;
}

}  // namespace quillmate::inventory
