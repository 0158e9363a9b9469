#pragma once

struct sqlite3;

namespace quillmate::codedb {

/// The name under which the schema knows the order of CompareText.
inline constexpr const char* kCollationName = "DEUTSCH";

/// Makes the collation known to a connection. Has to come before any statement that touches a text column. False when
/// memory is short.
bool RegisterCollation(sqlite3* db);

}  // namespace quillmate::codedb
