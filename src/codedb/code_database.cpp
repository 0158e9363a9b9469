#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "connection_p.h"

namespace quillmate::codedb {

struct Recordset::State {
  std::shared_ptr<Connection> connection;
  sqlite3_stmt* statement = nullptr;
  bool onRecord = false;
  bool atEnd = false;

  ~State() {
    if (connection->IsOpen()) sqlite3_finalize(statement);
  }

  sqlite3_stmt* Statement() const {
    if (!connection->IsOpen()) throw files::Failure(DatabaseReason::kClosed);
    return statement;
  }

  /// The column's value in the current record.
  sqlite3_stmt* StatementOnRecord(int column) const {
    sqlite3_stmt* const opened = Statement();
    if (!onRecord) throw files::Failure(DatabaseReason::kNoRecord);
    if (column < 0 || column >= sqlite3_column_count(opened)) {
      throw files::Failure(DatabaseReason::kNoColumn, {}, {std::to_string(column)});
    }
    return opened;
  }

  int ColumnNumber(std::string_view field) const {
    sqlite3_stmt* const opened = Statement();
    const std::string name = text::Utf8FromCode(field);
    for (int i = 0; i < sqlite3_column_count(opened); ++i) {
      if (text::EqualsIgnoreCase(sqlite3_column_name(opened, i), name)) return i;
    }
    throw files::Failure(DatabaseReason::kNoField, {}, {name});
  }
};

std::string EngineVersion() { return sqlite3_libversion(); }

Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

bool Recordset::Next() {
  sqlite3_stmt* const statement = state_->Statement();
  if (state_->atEnd) return false;
  const int step = sqlite3_step(statement);
  state_->onRecord = step == SQLITE_ROW;
  state_->atEnd = !state_->onRecord;
  if (step != SQLITE_ROW && step != SQLITE_DONE) state_->connection->Fail({});
  if (state_->atEnd) sqlite3_reset(statement);
  return state_->onRecord;
}

std::string Recordset::Text(std::string_view field) const { return Text(state_->ColumnNumber(field)); }

std::optional<std::int64_t> Recordset::Number(std::string_view field) const {
  return Number(state_->ColumnNumber(field));
}

std::string Recordset::Text(int column) const { return ColumnText(state_->StatementOnRecord(column), column); }

std::optional<std::int64_t> Recordset::Number(int column) const {
  return codedb::ColumnNumber(state_->StatementOnRecord(column), column);
}

CodeDatabase::CodeDatabase() : state_(std::make_unique<State>()) {}
CodeDatabase::~CodeDatabase() { CloseCodeDatabase(); }

void CodeDatabase::OpenCodeDatabase(const std::filesystem::path& folder) {
  CloseCodeDatabase();
  state_->connection = std::make_shared<Connection>(CodeDbPath(folder), Connection::Origin::kAnywhere);
}

void CodeDatabase::OpenModules(const std::filesystem::path& folder) {
  CloseCodeDatabase();
  state_->connection = std::make_shared<Connection>(CodeDbPath(folder), Connection::Origin::kModulesOfAnywhere);
}

void CodeDatabase::OpenOwnCodeDatabase(const std::filesystem::path& folder) {
  CloseCodeDatabase();
  state_->connection = std::make_shared<Connection>(CodeDbPath(folder), Connection::Origin::kOwn);
}

void CodeDatabase::CloseCodeDatabase() noexcept {
  // Recordsets may still hold the connection: closing it is not left to its last owner.
  if (state_->connection) state_->connection->Close();
  state_->connection.reset();
}

bool CodeDatabase::IsOpen() const noexcept { return state_->connection != nullptr; }

void CodeDatabase::ExecuteSql(std::string_view statement) {
  Connection& connection = state_->Opened();
  sqlite3_stmt* const prepared = connection.Prepare(statement);
  const bool isAction = sqlite3_column_count(prepared) == 0;
  const bool done = isAction && sqlite3_step(prepared) == SQLITE_DONE;
  sqlite3* const database = sqlite3_db_handle(prepared);
  std::optional<files::Failure> failure;
  if (!isAction)
    failure.emplace(DatabaseReason::kIsQuery);
  else if (!done)
    failure = StatementFailure(database, statement);
  sqlite3_finalize(prepared);
  if (failure) throw files::Failure(*failure);
}

Recordset CodeDatabase::OpenRecordset(std::string_view statement) {
  auto state = std::make_unique<Recordset::State>();
  state_->Opened();
  state->connection = state_->connection;
  state->statement = state->connection->Prepare(statement);
  if (sqlite3_column_count(state->statement) == 0) throw files::Failure(DatabaseReason::kNoQuery);
  return Recordset(std::move(state));
}

void CodeDatabase::Begin() {
  Connection& connection = state_->Opened();
  if (connection.InTransaction()) throw files::Failure(DatabaseReason::kBegun);
  connection.Run("BEGIN IMMEDIATE");
}

void CodeDatabase::Commit() {
  Connection& connection = state_->Opened();
  if (!connection.InTransaction()) throw files::Failure(DatabaseReason::kNotBegun);
  connection.Run("COMMIT");
}

void CodeDatabase::Rollback() noexcept {
  if (!state_->connection || !state_->connection->InTransaction()) return;
  try {
    state_->connection->Run("ROLLBACK");
  } catch (const files::Failure&) {
    // The engine drops what is not committed when the file is closed.
    CloseCodeDatabase();
  }
}

}  // namespace quillmate::codedb
