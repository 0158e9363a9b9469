#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/jet_sql.h>

struct sqlite3;
struct sqlite3_stmt;

namespace quillmate::codedb {

/// A shape of statement and its prepared statements that nobody runs at the moment.
struct PreparedShape {
  JetShape shape;
  std::vector<sqlite3_stmt*> idle;
};

/// A prepared statement with its values bound, on loan from its connection.
struct BoundStatement {
  std::shared_ptr<PreparedShape> shape;
  sqlite3_stmt* statement = nullptr;
};

/// Whether the bound values point into the statement's text or are copied.
enum class Binding { Borrowed, Copied };

/// One open database file with its statements. Once closed it stays closed: who still holds it finds `IsOpen` false.
class Connection {
 public:
  /// Opens the file and checks that it is a whole index. Throws DatabaseError.
  explicit Connection(const std::filesystem::path& file);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool IsOpen() const noexcept { return db_ != nullptr; }
  void Close() noexcept;

  /// Prepares a statement of the dialect, or takes one that is prepared already, and binds its literals. With
  /// Binding::Borrowed the text has to outlive the loan. Throws DatabaseError.
  BoundStatement Borrow(std::string_view statement, Binding binding);
  /// Takes a statement back, at any time and in any state.
  void GiveBack(BoundStatement&& loan) noexcept;

  /// Runs a statement of SQLite's own. Throws DatabaseError.
  void Run(const char* sql);
  bool InTransaction() const noexcept;
  /// Throws DatabaseError with what the database said last. `statement` is the text at fault, Windows-1252.
  [[noreturn]] void Fail(std::string_view statement) const;

 private:
  void SetUp();
  void CheckTables();
  void CheckNumbers();
  void CheckPages();
  std::shared_ptr<PreparedShape> FindShape(std::string_view statement);
  std::shared_ptr<PreparedShape> AddShape(std::string_view statement);
  sqlite3_stmt* Prepare(const std::string& sql, std::string_view statement);
  bool Bind(sqlite3_stmt* prepared, Binding binding);

  sqlite3* db_ = nullptr;
  /// The last used first.
  std::vector<std::shared_ptr<PreparedShape>> shapes_;
  /// The literals of the statement at hand, and those of them that had to be converted.
  std::vector<JetLiteral> literals_;
  std::vector<std::string> converted_;
};

}  // namespace quillmate::codedb
