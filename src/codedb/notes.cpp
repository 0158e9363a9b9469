#include <memory>
#include <set>
#include <tuple>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>

#include "database_error_p.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSchema =
    "CREATE TABLE notiz(projekt TEXT NOT NULL, modul TEXT NOT NULL, routine TEXT NOT NULL, zeile TEXT NOT NULL, "
    "folge INTEGER NOT NULL, text TEXT NOT NULL, lesezeichen INTEGER NOT NULL)";
constexpr const char* kInsert = "INSERT INTO notiz VALUES(?, ?, ?, ?, ?, ?, ?)";
constexpr const char* kSelect = "SELECT projekt, modul, routine, zeile, folge, text, lesezeichen FROM notiz";

struct CloseDatabase {
  void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

Database Open(const fs::path& file, const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Database database(opened);
  if (result != SQLITE_OK) FailFile(opened, file);
  // A project may come from anywhere: what else the file holds is never run.
  for (const int option :
       {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA}) {
    sqlite3_db_config(opened, option, 0, nullptr);
  }
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  return database;
}

Statement Prepare(sqlite3* database, const fs::path& file, const char* sql) {
  sqlite3_stmt* prepared = nullptr;
  if (sqlite3_prepare_v2(database, sql, -1, &prepared, nullptr) != SQLITE_OK) FailFile(database, file);
  return Statement(prepared);
}

std::string TextAt(sqlite3_stmt* row, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
  return text == nullptr ? std::string()
                         : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
}

void Bind(sqlite3_stmt* statement, int column, const std::string& text) {
  sqlite3_bind_text64(statement, column, text.c_str(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Fill(sqlite3* database, const fs::path& file, const std::vector<Note>& notes) {
  if (sqlite3_exec(database, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) FailFile(database, file);
  const Statement insert = Prepare(database, file, kInsert);
  for (const Note& note : notes) {
    sqlite3_reset(insert.get());
    int column = 0;
    for (const std::string* text : {&note.project, &note.module, &note.routine, &note.line}) {
      Bind(insert.get(), ++column, *text);
    }
    sqlite3_bind_int(insert.get(), ++column, note.occurrence);
    Bind(insert.get(), ++column, note.text);
    sqlite3_bind_int(insert.get(), ++column, note.isBookmark ? 1 : 0);
    if (sqlite3_step(insert.get()) != SQLITE_DONE) FailFile(database, file);
  }
}

struct FreeBytes {
  void operator()(unsigned char* bytes) const noexcept { sqlite3_free(bytes); }
};

}  // namespace

bool Note::SamePlace(const Note& other) const {
  return project == other.project && module == other.module && routine == other.routine && line == other.line &&
         occurrence == other.occurrence;
}

std::vector<Note> LoadNotes(const fs::path& folder) {
  const fs::path file = folder / kNotesFile;
  std::error_code ignored;
  if (!fs::is_regular_file(file, ignored)) return {};
  const Database database = Open(file, files::PathText(files::AbsolutePath(file)), SQLITE_OPEN_READONLY);
  const Statement row = Prepare(database.get(), file, kSelect);
  std::vector<Note> notes;
  int result = 0;
  while ((result = sqlite3_step(row.get())) == SQLITE_ROW) {
    sqlite3_stmt* at = row.get();
    notes.push_back({TextAt(at, 0), TextAt(at, 1), TextAt(at, 2), TextAt(at, 3), sqlite3_column_int(at, 4),
                     TextAt(at, 5), sqlite3_column_int(at, 6) != 0});
  }
  if (result != SQLITE_DONE) FailFile(database.get(), file);
  return notes;
}

void SaveNotes(const fs::path& folder, const std::vector<Note>& notes) {
  const fs::path file = folder / kNotesFile;
  if (notes.empty()) {
    fs::remove(file);
    return;
  }
  const Database database = Open(file, ":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  Fill(database.get(), file, notes);
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, FreeBytes> bytes(sqlite3_serialize(database.get(), "main", &size, 0));
  if (bytes == nullptr) FailFile(database.get(), file);
  files::ReplaceFile(file, {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)});
}

std::vector<Note> JoinNotes(std::vector<Note> own, const std::vector<Note>& other) {
  const auto key = [](const Note& note) {
    return std::tuple(note.project, note.module, note.routine, note.line, note.occurrence);
  };
  std::set<decltype(key(Note{}))> known;
  for (const Note& note : own) known.insert(key(note));
  for (const Note& note : other) {
    if (known.insert(key(note)).second) own.push_back(note);
  }
  return own;
}

}  // namespace quillmate::codedb
