#include <array>

#include <sqlite3.h>

#include <quillmate/files/file_error.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "database_error_p.h"

namespace quillmate::codedb {
namespace {

/// What follows the reason: nothing, the field that the engine names last, or the engine's own words.
enum class Detail { None, Field, Words };

struct Reason {
  int code;
  Detail detail;
  const char* text;
};

/// Extended codes first: the first entry that fits the extended or the plain code is taken.
constexpr std::array<Reason, 16> kReasons = {{
    {SQLITE_CONSTRAINT_CHECK, Detail::Field, "Der Wert ist zu groß oder zu klein für das Feld "},
    {SQLITE_CONSTRAINT_DATATYPE, Detail::Field, "Der Wert ist keine ganze Zahl für das Feld "},
    {SQLITE_CONSTRAINT_PRIMARYKEY, Detail::Field, "Es gibt schon einen Datensatz mit dieser Nummer im Feld "},
    {SQLITE_CONSTRAINT_ROWID, Detail::Field, "Es gibt schon einen Datensatz mit dieser Nummer im Feld "},
    {SQLITE_MISMATCH, Detail::None, "Der Schlüssel eines Datensatzes muss eine ganze Zahl sein"},
    {SQLITE_BUSY, Detail::None, "Die Datenbank ist gesperrt: ein anderes Programm schreibt gerade in sie"},
    {SQLITE_LOCKED, Detail::None, "Die Datenbank ist gesperrt: eine Abfrage wird noch gelesen"},
    {SQLITE_READONLY, Detail::None, "Die Datenbank ist schreibgeschützt"},
    {SQLITE_CORRUPT, Detail::None, "Die Datenbank ist beschädigt"},
    {SQLITE_NOTADB, Detail::None, "Die Datei ist keine Datenbank"},
    {SQLITE_FULL, Detail::None, "Auf dem Datenträger ist kein Platz mehr"},
    {SQLITE_CANTOPEN, Detail::None, "Die Datei lässt sich nicht öffnen"},
    {SQLITE_PERM, Detail::None, "Der Zugriff auf die Datei ist nicht erlaubt"},
    {SQLITE_IOERR, Detail::Words, "Die Datei lässt sich nicht lesen oder schreiben"},
    {SQLITE_NOMEM, Detail::None, "Der Arbeitsspeicher reicht nicht aus"},
    {SQLITE_ERROR, Detail::Words, "Die Datenbank versteht die Anweisung nicht: "},
}};

const Reason* FindReason(int extendedCode) {
  for (const Reason& reason : kReasons) {
    if (reason.code == extendedCode || reason.code == (extendedCode & 0xFF)) return &reason;
  }
  return nullptr;
}

/// "CHECK constraint failed: mod_typ", "... failed: td_mod.mod_num", "... INTEGER column td_mod.mod_typ".
std::string_view LastName(std::string_view words) { return text::TextAfterLast(text::TextAfterLast(words, " "), "."); }

std::string DescribeReason(int code, std::string_view words) {
  const Reason* const reason = FindReason(code);
  if (reason == nullptr) return "Die Datenbank meldet: " + std::string(words);
  std::string out = reason->text;
  if (reason->detail == Detail::Field) out.append("\"").append(LastName(words)).append("\"");
  if (reason->detail == Detail::Words) out.append(words);
  return out;
}

/// The engine does not always remember it.
std::string SystemReason(int code) {
  return code == 0 ? std::string() : ": " + files::ReasonText(std::error_code(code, std::system_category()));
}

}  // namespace

std::string ErrorText(sqlite3* db, std::string_view statement) {
  constexpr std::size_t kQuoted = 200;
  const int code = sqlite3_extended_errcode(db);
  std::string words = sqlite3_errmsg(db);
  if ((code & 0xFF) == SQLITE_IOERR) words = SystemReason(sqlite3_system_errno(db));
  std::string out = DescribeReason(code, words);
  if (statement.empty()) return out;
  out += "\r\n" + text::Utf8FromCode(statement.substr(0, kQuoted));
  return statement.size() > kQuoted ? out + " ..." : out;
}

}  // namespace quillmate::codedb
