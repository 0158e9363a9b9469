#include <array>
#include <cerrno>
#include <new>
#include <utility>

#include <sqlite3.h>

#include <quillmate/files/file_error.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "database_error_p.h"

namespace quillmate::codedb {
namespace {

/// What follows the text: nothing, the field that the engine names last, or the engine's own words; or the system's
/// words are in its place.
enum class Detail { None, Field, Words, System };

struct Meaning {
  int code;
  DatabaseReason reason;
  Detail detail;
  const char* text;
};

/// Extended codes first: the first entry that fits the extended or the plain code is taken.
constexpr std::array kMeanings{
    Meaning{SQLITE_CONSTRAINT_CHECK, DatabaseReason::kBadValue, Detail::Field,
            "Der Wert ist zu groß oder zu klein für das Feld "},
    Meaning{SQLITE_CONSTRAINT_DATATYPE, DatabaseReason::kBadValue, Detail::Field,
            "Der Wert ist keine ganze Zahl für das Feld "},
    Meaning{SQLITE_CONSTRAINT_PRIMARYKEY, DatabaseReason::kTaken, Detail::Field,
            "Es gibt schon einen Datensatz mit dieser Nummer im Feld "},
    Meaning{SQLITE_CONSTRAINT_ROWID, DatabaseReason::kTaken, Detail::Field,
            "Es gibt schon einen Datensatz mit dieser Nummer im Feld "},
    Meaning{SQLITE_MISMATCH, DatabaseReason::kBadValue, Detail::None,
            "Der Schlüssel eines Datensatzes muss eine ganze Zahl sein"},
    Meaning{SQLITE_BUSY, DatabaseReason::kBusy, Detail::None,
            "Die Datenbank ist gesperrt: ein anderes Programm schreibt gerade in sie"},
    Meaning{SQLITE_LOCKED, DatabaseReason::kBusy, Detail::None,
            "Die Datenbank ist gesperrt: eine Abfrage wird noch gelesen"},
    Meaning{SQLITE_READONLY, DatabaseReason::kReadOnly, Detail::None, "Die Datenbank ist schreibgeschützt"},
    Meaning{SQLITE_CORRUPT, DatabaseReason::kDamaged, Detail::None, "Die Datenbank ist beschädigt"},
    Meaning{SQLITE_NOTADB, DatabaseReason::kNoDatabase, Detail::None, "Die Datei ist keine Datenbank"},
    Meaning{SQLITE_FULL, DatabaseReason::kFull, Detail::System, nullptr},
    Meaning{SQLITE_CANTOPEN, DatabaseReason::kCannotOpen, Detail::None, "Die Datei lässt sich nicht öffnen"},
    Meaning{SQLITE_PERM, DatabaseReason::kNoAccess, Detail::System, nullptr},
    Meaning{SQLITE_AUTH, DatabaseReason::kNoAccess, Detail::System, nullptr},
    Meaning{SQLITE_IOERR, DatabaseReason::kInputOutput, Detail::Words,
            "Die Datei lässt sich nicht lesen oder schreiben"},
    Meaning{SQLITE_NOMEM, DatabaseReason::kOutOfMemory, Detail::System, nullptr},
    Meaning{SQLITE_ERROR, DatabaseReason::kBadStatement, Detail::Words, "Die Datenbank versteht die Anweisung nicht: "},
};

const Meaning* FindMeaning(int extendedCode) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.code == extendedCode || meaning.code == (extendedCode & 0xFF)) return &meaning;
  }
  return nullptr;
}

/// What is not the engine's matter has the system's words.
std::string SystemText(DatabaseReason reason) {
  if (reason == DatabaseReason::kOutOfMemory) return files::FailureText(std::bad_alloc());
  return files::ReasonText(reason == DatabaseReason::kFull ? ENOSPC : EACCES);
}

/// "CHECK constraint failed: mod_typ", "... failed: td_mod.mod_num", "... INTEGER column td_mod.mod_typ".
std::string_view LastName(std::string_view words) { return text::TextAfterLast(text::TextAfterLast(words, " "), "."); }

std::string Describe(int code, std::string_view words) {
  const Meaning* const meaning = FindMeaning(code);
  if (meaning == nullptr) return "Die Datenbank meldet: " + std::string(words);
  if (meaning->detail == Detail::System) return SystemText(meaning->reason);
  std::string out = meaning->text;
  if (meaning->detail == Detail::Field) out.append("\"").append(LastName(words)).append("\"");
  if (meaning->detail == Detail::Words) out.append(words);
  return out;
}

/// The engine does not always remember it.
std::string SystemReason(int code) {
  return code == 0 ? std::string() : ": " + files::ReasonText(std::error_code(code, std::system_category()));
}

}  // namespace

DatabaseError::DatabaseError(DatabaseReason reason, const std::string& text, std::filesystem::path file)
    : std::runtime_error(text), reason_(reason), file_(std::move(file)) {}

DatabaseReason EngineReason(sqlite3* database) {
  const Meaning* const meaning = FindMeaning(sqlite3_extended_errcode(database));
  return meaning == nullptr ? DatabaseReason::kOther : meaning->reason;
}

std::string EngineText(sqlite3* database) {
  const int code = sqlite3_extended_errcode(database);
  std::string words = sqlite3_errmsg(database);
  if ((code & 0xFF) == SQLITE_IOERR) words = SystemReason(sqlite3_system_errno(database));
  return Describe(code, words);
}

std::string StatementText(sqlite3* database, std::string_view statement) {
  constexpr std::size_t kQuoted = 200;
  std::string out = EngineText(database);
  if (statement.empty()) return out;
  out += "\r\n" + text::Utf8FromCode(statement.substr(0, kQuoted));
  return statement.size() > kQuoted ? out + " ..." : out;
}

void FailStatement(sqlite3* database, std::string_view statement) {
  throw DatabaseError(EngineReason(database), StatementText(database, statement));
}

void FailFile(sqlite3* database, const std::filesystem::path& file) {
  throw DatabaseError(EngineReason(database), files::PathText(file) + ": " + EngineText(database), file);
}

}  // namespace quillmate::codedb
