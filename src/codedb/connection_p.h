#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/jet_sql.h>

struct sqlite3;
struct sqlite3_stmt;

namespace quillmate::codedb {

/// What the engine said last of a statement (Windows-1252), which is quoted unless it is empty.
files::Failure StatementFailure(sqlite3* database, std::string_view statement);

/// Whether the bound values point into the caller's text or are copied.
enum class Binding { Borrowed, Copied };

/// One open database file with its statements. Once closed it stays closed: who still holds it finds `IsOpen` false.
class Connection {
 public:
  /// Opens the file and checks that it is a whole index. Throws files::Failure.
  /// What is in a file of `kOwn` is known; of one that is `kModulesOfAnywhere` only the modules are wanted.
  enum class Origin { kAnywhere, kModulesOfAnywhere, kOwn };
  Connection(const std::filesystem::path& file, Origin origin);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool IsOpen() const noexcept { return db_ != nullptr; }
  /// Ends all statements.
  void Close() noexcept;

  /// Prepares a statement of the dialect, which is the caller's to end as long as the connection is open. Throws
  /// files::Failure.
  sqlite3_stmt* Prepare(std::string_view statement);
  /// A form's statement with its values bound; prepared once. One user at a time, who resets it. `form` is a literal of
  /// the program: it is known by its address. Throws files::Failure.
  sqlite3_stmt* Bind(std::string_view form, std::initializer_list<JetValue> values, Binding binding);

  /// Runs a statement of SQLite's own. Throws files::Failure.
  void Run(const char* sql);
  bool InTransaction() const noexcept;
  /// Throws files::Failure with what the database said last. `statement` is the text at fault, Windows-1252.
  [[noreturn]] void Fail(std::string_view statement) const;

 private:
  void SetUp();
  void CheckTables();
  void CheckNumbers(const char* query);
  void CheckPages(const char* pragma);
  sqlite3_stmt* PrepareSqlite(const std::string& sql, std::string_view statement, unsigned flags);
  sqlite3_stmt* PrepareForm(std::string_view form);

  sqlite3* db_ = nullptr;
  std::vector<std::pair<const char*, sqlite3_stmt*>> forms_;
  /// The texts bound last that had to be converted.
  std::vector<std::string> converted_;
};

/// A column of the row that a statement is at: Windows-1252, NULL as empty; nothing for NULL.
std::string ColumnText(sqlite3_stmt* statement, int column);
std::optional<std::int64_t> ColumnNumber(sqlite3_stmt* statement, int column);

/// What an index holds as long as it is open.
struct CodeDatabase::State {
  std::shared_ptr<Connection> connection;

  Connection& Opened() const {
    if (!connection) throw files::Failure(DatabaseReason::kNotOpen);
    return *connection;
  }
};

}  // namespace quillmate::codedb
