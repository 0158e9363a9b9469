#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

/// The index of one project: a SQLite file that takes the statements of the Jet dialect.
///
/// Tables (made once in the template, never by the program):
///   td_mod  (mod_num 32 bit key, mod_name text, mod_typ 16 bit, mod_zeilen 32 bit)
///   td_rout (rou_num 32 bit key, mod_num 32 bit, rou_name text, rou_typ 16 bit, rou_open 16 bit,
///            anz_dec_zeilen 16 bit, rou_start 32 bit, rou_ende 32 bit)
/// Text compares and sorts as collation.h says. Values may be given as text; what is no whole number or does not fit
/// its column is refused. Where a query leaves the order open, rows come in the order of their numbers.
namespace quillmate::codedb {

/// A statement or a file that the database refused. what() is German, UTF-8, and may hold several lines (CR LF).
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Version of the database engine, for instance "3.40.1".
std::string EngineVersion();

/// A forward-readable result. It may outlive its database: once that is closed, every call throws DatabaseError. So
/// does reading a field before the first or behind the last record.
class Recordset {
 public:
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;
  ~Recordset();

  /// Steps to the next record (the first call steps to the first one); false behind the last.
  bool Next();
  /// A field of the current record as Windows-1252 text; NULL reads as empty. Names compare without regard to case.
  /// An unknown name throws DatabaseError.
  std::string Text(std::string_view field) const;
  /// A field as a number; nothing when it is NULL.
  std::optional<std::int64_t> Number(std::string_view field) const;
  /// The same by position, 0-based.
  std::string Text(int column) const;
  std::optional<std::int64_t> Number(int column) const;

 private:
  friend class CodeDatabase;
  struct State;
  explicit Recordset(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

/// The open database (there is one at a time). Statements are texts in the dialect that jet_sql.h describes,
/// Windows-1252. Statements that differ in their values alone are prepared once.
class CodeDatabase {
 public:
  CodeDatabase();
  ~CodeDatabase();
  CodeDatabase(const CodeDatabase&) = delete;
  CodeDatabase& operator=(const CodeDatabase&) = delete;

  /// Opens the file shared and writable (read-only where the medium allows no more) and looks through all of it.
  /// Throws DatabaseError when the file is missing, damaged, locked, or lacks one of the two tables; it is never
  /// created. An earlier database is closed first. A mere reader writes nothing, neither into the file nor beside it.
  void Open(const std::filesystem::path& file);
  /// Never fails; also when nothing is open.
  void Close() noexcept;
  bool IsOpen() const noexcept;

  /// Runs an action statement. Throws DatabaseError.
  void ExecuteSql(std::string_view statement);
  /// Runs a select statement. Throws DatabaseError.
  Recordset OpenRecordset(std::string_view statement);

  /// One read is one transaction: everything up to Commit becomes visible at once, Rollback (or closing) drops it.
  /// Begin within a transaction and Commit without one throw DatabaseError; Rollback without one does nothing.
  void Begin();
  void Commit();
  void Rollback() noexcept;

 private:
  friend class Recordset;
  struct State;
  std::unique_ptr<State> state_;
};

/// A text for use between single quotes in a statement: its own single quotes are doubled.
std::string QuoteLiteral(std::string_view text);

}  // namespace quillmate::codedb
