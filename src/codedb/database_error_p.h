#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace quillmate::codedb {

/// The German text for what the database said last, UTF-8. `statement` (Windows-1252) is quoted in it unless empty.
std::string ErrorText(sqlite3* db, std::string_view statement);

}  // namespace quillmate::codedb
