#include <sqlite3.h>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/files/paths.h>

#include "foreign_file_p.h"

namespace quillmate::codedb {
namespace {

Database Open(const std::filesystem::path& file, const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Database database(opened);
  if (result != SQLITE_OK) throw EngineFailure(opened, file);
  SwitchOffForeign(opened);
  return database;
}

}  // namespace

void CloseDatabase::operator()(sqlite3* database) const noexcept { sqlite3_close(database); }

void SwitchOffForeign(sqlite3* database) noexcept {
  for (const int option :
       {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA}) {
    sqlite3_db_config(database, option, 0, nullptr);
  }
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

Database OpenForeign(const std::filesystem::path& file, int flags) {
  return Open(file, files::PathText(files::AbsolutePath(file)), flags);
}

Database OpenInMemory(const std::filesystem::path& file) {
  return Open(file, ":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

}  // namespace quillmate::codedb
