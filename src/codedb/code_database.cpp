#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "connection_p.h"

namespace quillmate::codedb {

struct Recordset::State {
  std::shared_ptr<Connection> connection;
  BoundStatement loan;
  bool onRecord = false;
  bool atEnd = false;

  ~State() { connection->GiveBack(std::move(loan)); }

  sqlite3_stmt* Statement() const {
    if (!connection->IsOpen()) throw DatabaseError("Die Datenbank dieser Abfrage ist geschlossen");
    return loan.statement;
  }

  /// The column's value in the current record.
  sqlite3_stmt* StatementOnRecord(int column) const {
    sqlite3_stmt* const statement = Statement();
    if (!onRecord) throw DatabaseError("Die Abfrage steht auf keinem Datensatz");
    if (column < 0 || column >= sqlite3_column_count(statement)) {
      throw DatabaseError("Die Abfrage hat kein Feld Nummer " + std::to_string(column));
    }
    return statement;
  }

  int ColumnNumber(std::string_view field) const {
    sqlite3_stmt* const statement = Statement();
    const std::string name = text::Utf8FromCode(field);
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
      if (text::EqualsIgnoreCase(sqlite3_column_name(statement, i), name)) return i;
    }
    throw DatabaseError("Die Abfrage hat kein Feld \"" + name + "\"");
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

std::string Recordset::Text(int column) const {
  sqlite3_stmt* const statement = state_->StatementOnRecord(column);
  const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (bytes == nullptr) return {};
  return text::CodeFromUtf8({bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
}

std::optional<std::int64_t> Recordset::Number(int column) const {
  sqlite3_stmt* const statement = state_->StatementOnRecord(column);
  if (sqlite3_column_type(statement, column) == SQLITE_NULL) return std::nullopt;
  return sqlite3_column_int64(statement, column);
}

struct CodeDatabase::State {
  std::shared_ptr<Connection> connection;

  Connection& Opened() const {
    if (!connection) throw DatabaseError("Es ist keine Datenbank geöffnet");
    return *connection;
  }
};

CodeDatabase::CodeDatabase() : state_(std::make_unique<State>()) {}
CodeDatabase::~CodeDatabase() { Close(); }

void CodeDatabase::Open(const std::filesystem::path& file) {
  Close();
  state_->connection = std::make_shared<Connection>(file);
}

void CodeDatabase::Close() noexcept {
  // Recordsets may still hold the connection: closing it is not left to its last owner.
  if (state_->connection) state_->connection->Close();
  state_->connection.reset();
}

bool CodeDatabase::IsOpen() const noexcept { return state_->connection != nullptr; }

void CodeDatabase::ExecuteSql(std::string_view statement) {
  Connection& connection = state_->Opened();
  BoundStatement loan = connection.Borrow(statement, Binding::Borrowed);
  if (sqlite3_column_count(loan.statement) > 0) {
    connection.GiveBack(std::move(loan));
    throw DatabaseError("Eine Abfrage lässt sich nicht als Anweisung ausführen");
  }
  if (sqlite3_step(loan.statement) == SQLITE_DONE) return connection.GiveBack(std::move(loan));
  try {
    connection.Fail(statement);
  } catch (const DatabaseError&) {
    connection.GiveBack(std::move(loan));
    throw;
  }
}

Recordset CodeDatabase::OpenRecordset(std::string_view statement) {
  Connection& connection = state_->Opened();
  auto state = std::make_unique<Recordset::State>();
  state->connection = state_->connection;
  state->loan = connection.Borrow(statement, Binding::Copied);
  if (sqlite3_column_count(state->loan.statement) == 0) throw DatabaseError("Die Anweisung ist keine Abfrage");
  return Recordset(std::move(state));
}

void CodeDatabase::Begin() {
  Connection& connection = state_->Opened();
  if (connection.InTransaction()) throw DatabaseError("Es wird schon ein Projekt gelesen");
  connection.Run("BEGIN IMMEDIATE");
}

void CodeDatabase::Commit() {
  Connection& connection = state_->Opened();
  if (!connection.InTransaction()) throw DatabaseError("Es gibt keine Änderungen zu übernehmen");
  connection.Run("COMMIT");
}

void CodeDatabase::Rollback() noexcept {
  if (!state_->connection || !state_->connection->InTransaction()) return;
  try {
    state_->connection->Run("ROLLBACK");
  } catch (const DatabaseError&) {
    // The engine drops what is not committed when the file is closed.
    Close();
  }
}

std::string QuoteLiteral(std::string_view text) { return text::ReplaceAll(text, "'", "''"); }

}  // namespace quillmate::codedb
