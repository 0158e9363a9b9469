#pragma once

#include <string_view>

#include <quillmate/codedb/database_reason.h>

namespace quillmate::codedb {

/// EngineFailure; `statement` (Windows-1252) is quoted in it unless empty.
files::Failure StatementFailure(sqlite3* database, std::string_view statement);

}  // namespace quillmate::codedb
