#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <quillmate/files/failure.h>

struct sqlite3;
struct sqlite3_stmt;

namespace quillmate::inventory {

/// An open database file. Failures are files::Failure. After the first failure every further step fails too, so
/// that what has gone wrong halfway is never made lasting. Used by one thread at a time.
class Database {
 public:
  enum class Mode { kRead, kWrite, kCreate };
  Database(const std::filesystem::path& file, Mode mode);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  sqlite3* Handle() const noexcept { return handle_; }
  const std::filesystem::path& File() const noexcept { return file_; }
  /// Statements without values, any number of them.
  void Run(const char* sql);
  std::int64_t LastRow() const noexcept;
  bool InTransaction() const noexcept;
  [[noreturn]] void Fail();
  void CheckUsable() const;

 private:
  std::filesystem::path file_;
  /// The last that failed.
  std::optional<files::Failure> failure_;
  sqlite3* handle_ = nullptr;
};

/// A statement whose values are bound and whose columns are read from left to right.
class Statement {
 public:
  Statement(Database& database, std::string_view sql);
  Statement(Statement&&) noexcept;
  ~Statement();

  /// The text must stay until the statement has run.
  Statement& Add(std::string_view text);
  Statement& Add(std::int64_t number);
  /// The 64 bits of a sum; 0 is NULL.
  Statement& AddHash(std::uint64_t hash);
  Statement& AddNull();
  template <typename Number>
  Statement& Add(const std::optional<Number>& number) {
    return number ? Add(static_cast<std::int64_t>(*number)) : AddNull();
  }
  /// Runs it and makes it ready for the next values.
  void Run();
  /// Goes to the next row; at the end it is ready for the next values.
  bool Next();
  /// Forgets the rows that are left.
  void Reset() noexcept;

  std::string Text();
  /// Valid until Next.
  std::string_view TextView();
  std::int64_t Number();
  bool IsNull() const;
  void Skip() noexcept { ++column_; }
  bool IsNumber() const;
  int Columns() const noexcept;
  const char* ColumnName(int column) const;

 private:
  Database* database_;
  sqlite3_stmt* statement_ = nullptr;
  int column_ = 0;
};

}  // namespace quillmate::inventory
