#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>

/// The rows of the index as records, for reports. Names are Windows-1252.
namespace quillmate::codedb {

struct RoutineRecord {
  std::int64_t number = 0;
  std::int64_t moduleNumber = 0;
  std::string name;
  int kind = 0;
  int visibility = 0;
  int headerLines = 0;
  /// 1-based lines of the stored text; missing when the scan never saw the line.
  std::optional<std::int64_t> start;
  std::optional<std::int64_t> end;
};

struct ModuleRecord {
  std::int64_t number = 0;
  std::string name;
  int kind = 0;
  std::int64_t lines = 0;
  std::vector<RoutineRecord> routines;
};

/// All modules by `mod_num`, each with its routines by `rou_num`. Throws DatabaseError.
std::vector<ModuleRecord> ReadIndex(CodeDatabase& database);

}  // namespace quillmate::codedb
