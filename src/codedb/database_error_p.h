#pragma once

#include <string>
#include <string_view>

#include <quillmate/codedb/database_error.h>

namespace quillmate::codedb {

/// EngineText; `statement` (Windows-1252) is quoted in it unless empty.
std::string StatementText(sqlite3* database, std::string_view statement);
/// Throws DatabaseError with what the engine said last.
[[noreturn]] void FailStatement(sqlite3* database, std::string_view statement);
/// The same for a file that holds something else than the index: its path comes first.
[[noreturn]] void FailFile(sqlite3* database, const std::filesystem::path& file);

}  // namespace quillmate::codedb
