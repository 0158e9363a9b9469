#include <memory>
#include <set>
#include <tuple>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>

#include "foreign_file_p.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSchema =
    "CREATE TABLE notiz(projekt TEXT NOT NULL, modul TEXT NOT NULL, routine TEXT NOT NULL, zeile TEXT NOT NULL, "
    "folge INTEGER NOT NULL, text TEXT NOT NULL, lesezeichen INTEGER NOT NULL)";
constexpr const char* kInsert = "INSERT INTO notiz VALUES(?, ?, ?, ?, ?, ?, ?)";
constexpr const char* kSelect = "SELECT projekt, modul, routine, zeile, folge, text, lesezeichen FROM notiz";

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

Statement Prepare(sqlite3* database, const fs::path& file, const char* sql) {
  sqlite3_stmt* prepared = nullptr;
  if (sqlite3_prepare_v2(database, sql, -1, &prepared, nullptr) != SQLITE_OK) throw EngineFailure(database, file);
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
  if (sqlite3_exec(database, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) throw EngineFailure(database, file);
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
    if (sqlite3_step(insert.get()) != SQLITE_DONE) throw EngineFailure(database, file);
  }
}

/// Throws files::Failure for what is there and no file: a pipe would be written into, a link lead out of the project.
bool IsThere(const fs::path& file) {
  std::error_code error;
  if (fs::is_regular_file(file, error)) return true;
  if (fs::symlink_status(file, error).type() == fs::file_type::not_found) return false;
  throw files::Failure(std::make_error_code(std::errc::not_supported), file);
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
  if (!IsThere(file)) return {};
  const Database database = OpenForeign(file, SQLITE_OPEN_READONLY);
  const Statement row = Prepare(database.get(), file, kSelect);
  std::vector<Note> notes;
  int result = 0;
  while ((result = sqlite3_step(row.get())) == SQLITE_ROW) {
    sqlite3_stmt* at = row.get();
    notes.push_back({TextAt(at, 0), TextAt(at, 1), TextAt(at, 2), TextAt(at, 3), sqlite3_column_int(at, 4),
                     TextAt(at, 5), sqlite3_column_int(at, 6) != 0});
  }
  if (result != SQLITE_DONE) throw EngineFailure(database.get(), file);
  return notes;
}

void SaveNotes(const fs::path& folder, const std::vector<Note>& notes) {
  const fs::path file = folder / kNotesFile;
  if (!IsThere(file) && notes.empty()) return;
  if (notes.empty()) {
    std::error_code error;
    if (!fs::remove(file, error) && error) throw files::Failure(files::FileAction::kRemove, file, error);
    return;
  }
  const Database database = OpenInMemory(file);
  Fill(database.get(), file, notes);
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, FreeBytes> bytes(sqlite3_serialize(database.get(), "main", &size, 0));
  if (bytes == nullptr) throw EngineFailure(database.get(), file);
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
