#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

namespace quillmate::codedb {
namespace {

using enum DatabaseReason;
using Words = files::ReasonWords<DatabaseReason>;

constexpr std::array kWords{
    Words{kMissing, "Die Datenbank %p existiert nicht"},
    Words{kCannotOpen, "Die Datei lässt sich nicht öffnen"},
    Words{kNoDatabase, "Die Datei ist keine Datenbank"},
    Words{kDamaged, "Die Datenbank ist beschädigt"},
    Words{kNoTable, "Die Tabelle %1 fehlt darin"},
    Words{kBadNumbers, "Die Datenbank ist beschädigt: sie enthält unmögliche Nummern"},
    Words{kNoModule, "Das Modul %1 fehlt im Projekt."},
    Words{kReplaced, "Das Projekt in %p wurde inzwischen von einem anderen Programm neu geschrieben."},
    Words{kDamagedFacts, "Die Datei %p ist beschädigt"},
    Words{kNewerFacts, "Die Datei %p stammt von einer neueren Fassung des Programms"},
    Words{kBusy, "Die Datenbank ist gesperrt: ein anderes Programm schreibt gerade in sie"},
    Words{kQueryOpen, "Die Datenbank ist gesperrt: eine Abfrage wird noch gelesen"},
    Words{kReadOnly, "Die Datenbank ist schreibgeschützt"},
    Words{kInputOutput, "Die Datei lässt sich nicht lesen oder schreiben%1"},
    Words{kOutOfRange, "Der Wert ist zu groß oder zu klein für das Feld \"%1\""},
    Words{kNoWholeNumber, "Der Wert ist keine ganze Zahl für das Feld \"%1\""},
    Words{kTaken, "Es gibt schon einen Datensatz mit dieser Nummer im Feld \"%1\""},
    Words{kNoNumberKey, "Der Schlüssel eines Datensatzes muss eine ganze Zahl sein"},
    Words{kNoSorting, "Die Sprachdaten für die deutsche Sortierung fehlen"},
    Words{kOther, "Die Datenbank meldet: %1"},
    Words{kBadStatement, "Die Datenbank versteht die Anweisung nicht: %1"},
    Words{kOpenText, "Das schließende Anführungszeichen fehlt bei: %1"},
    Words{kOpenName, "Die schließende Klammer \"]\" fehlt bei: %1"},
    Words{kBadName, "Kein gültiger Name bei: %1"},
    Words{kBadNumber, "Keine gültige Zahl bei: %1"},
    Words{kBadCharacter, "Unerwartetes Zeichen bei: %1"},
    Words{kManyStatements, "Mehr als eine Anweisung bei: %1"},
    Words{kExtraBracket, "Eine Klammer wird geschlossen, die nicht offen ist"},
    Words{kDeepBrackets, "Zu viele Klammern ineinander"},
    Words{kOpenBracket, "Eine Klammer wird nicht geschlossen"},
    Words{kNoStatement, "Keine Anweisung INSERT, UPDATE, DELETE oder SELECT"},
    Words{kClosed, "Die Datenbank dieser Abfrage ist geschlossen"},
    Words{kNotOpen, "Es ist keine Datenbank geöffnet"},
    Words{kNoRecord, "Die Abfrage steht auf keinem Datensatz"},
    Words{kNoColumn, "Die Abfrage hat kein Feld Nummer %1"},
    Words{kNoField, "Die Abfrage hat kein Feld \"%1\""},
    Words{kIsQuery, "Eine Abfrage lässt sich nicht als Anweisung ausführen"},
    Words{kNoQuery, "Die Anweisung ist keine Abfrage"},
    Words{kBegun, "Es wird schon ein Projekt gelesen"},
    Words{kNotBegun, "Es gibt keine Änderungen zu übernehmen"},
    Words{kOccupied, "Der Ordner ist kein Projekt und nicht leer; er wird nicht überschrieben"},
    Words{kForeignFile, "Das gehört nicht zum Projekt und wird nicht überschrieben"},
    Words{kNotOpened, "Die Datenbank %p lässt sich nicht öffnen.\r\n%c"},
    Words{kStatement, "%c\r\n%1"},
    Words{kBrokenProject, "Projekt in %1\r\nist nicht mehr intakt"},
};
static_assert(files::IsComplete(kWords, kBrokenProject));

/// What the words of a reason leave open: nothing, the field that the engine names last, the engine's own words, or
/// what the system said.
enum class Detail { kNone, kField, kEngine, kSystem };

struct Meaning {
  int code;
  DatabaseReason reason;
  Detail detail = Detail::kNone;
};

/// Extended codes first: the first entry that fits the extended or the plain code is taken.
constexpr std::array kMeanings{
    Meaning{SQLITE_CONSTRAINT_CHECK, kOutOfRange, Detail::kField},
    Meaning{SQLITE_CONSTRAINT_DATATYPE, kNoWholeNumber, Detail::kField},
    Meaning{SQLITE_CONSTRAINT_PRIMARYKEY, kTaken, Detail::kField},
    Meaning{SQLITE_CONSTRAINT_ROWID, kTaken, Detail::kField},
    Meaning{SQLITE_MISMATCH, kNoNumberKey},
    Meaning{SQLITE_BUSY, kBusy},
    Meaning{SQLITE_LOCKED, kQueryOpen},
    Meaning{SQLITE_READONLY, kReadOnly},
    Meaning{SQLITE_CORRUPT, kDamaged},
    Meaning{SQLITE_NOTADB, kNoDatabase},
    Meaning{SQLITE_CANTOPEN, kCannotOpen},
    Meaning{SQLITE_IOERR, kInputOutput, Detail::kSystem},
    Meaning{SQLITE_ERROR, kBadStatement, Detail::kEngine},
};

/// What is not the engine's matter is the system's.
constexpr auto kOfSystem = std::to_array<std::pair<int, int>>(
    {{SQLITE_FULL, ENOSPC}, {SQLITE_PERM, EACCES}, {SQLITE_AUTH, EACCES}, {SQLITE_NOMEM, ENOMEM}});

/// "CHECK constraint failed: mod_typ", "... failed: td_mod.mod_num", "... INTEGER column td_mod.mod_typ".
std::string_view LastName(std::string_view words) { return text::TextAfterLast(text::TextAfterLast(words, " "), "."); }

std::vector<std::string> DetailsOf(sqlite3* database, Detail detail) {
  switch (detail) {
    case Detail::kField:
      return {std::string(LastName(sqlite3_errmsg(database)))};
    case Detail::kEngine:
      return {sqlite3_errmsg(database)};
    case Detail::kSystem:
      // The engine does not always remember it.
      if (const int code = sqlite3_system_errno(database); code != 0)
        return {": " + files::ReasonText(std::error_code(code, std::system_category()))};
      return {};
    default:
      return {};
  }
}

std::string FolderText(const std::filesystem::path& folder) { return text::EnsureBackslash(files::PathText(folder)); }

}  // namespace

std::error_code make_error_code(DatabaseReason reason) noexcept {
  static const files::ReasonCategory category("codedb", kWords);
  return {static_cast<int>(reason), category};
}

files::Failure EngineFailure(sqlite3* database, const std::filesystem::path& file) {
  const int code = sqlite3_extended_errcode(database);
  for (const auto& [known, system] : kOfSystem) {
    if (known == (code & 0xFF)) return files::Failure(std::error_code(system, std::generic_category()), file);
  }
  for (const Meaning& meaning : kMeanings) {
    if (meaning.code == code || meaning.code == (code & 0xFF))
      return files::Failure(meaning.reason, file, DetailsOf(database, meaning.detail));
  }
  return files::Failure(kOther, file, DetailsOf(database, Detail::kEngine));
}

files::Failure BrokenProject(const std::filesystem::path& folder) {
  return files::Failure(kBrokenProject, {}, {FolderText(folder)});
}

files::Failure BrokenProject(const std::filesystem::path& folder, const files::Failure& cause) {
  return files::Failure(kBrokenProject, cause, {}, {FolderText(folder)});
}

}  // namespace quillmate::codedb
