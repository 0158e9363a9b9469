#pragma once

#include <filesystem>
#include <memory>
#include <string>

struct sqlite3;

/// Database files beside the index. A project may come from anywhere: what such a file holds beside its tables is never
/// run.
namespace quillmate::codedb {

struct CloseDatabase {
  void operator()(sqlite3* database) const noexcept;
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

/// Turns off triggers, views, functions in the schema and what could harm the file.
void SwitchOffForeign(sqlite3* database) noexcept;

/// `flags` are SQLITE_OPEN_...; a database in memory where `file` has no bytes yet. Throws files::Failure.
Database OpenForeign(const std::filesystem::path& file, int flags);
Database OpenInMemory(const std::filesystem::path& file);

}  // namespace quillmate::codedb
