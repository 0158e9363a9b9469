#pragma once

#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/numbers.h>

/// The rows of the index as records. Names are Windows-1252; what a column lacks (NULL) reads as 0 or empty unless
/// said.
namespace quillmate::codedb {

/// A row of td_rout. `kind` and `visibility` have the values of codes.h.
struct RoutineRecord {
  RoutineNumber number;
  ModuleNumber module;
  std::string name;
  int kind = 0;
  int visibility = 0;
  /// Physical lines of the header.
  int headerLines = 0;
  /// Missing when the scan never saw the line.
  std::optional<Line> start;
  std::optional<Line> end;
};

/// A row of td_mod.
struct ModuleRecord {
  ModuleNumber number;
  std::string name;
  int kind = 0;
  std::int32_t lines = 0;
  /// Filled by CodeDatabase::ReadIndex alone.
  std::vector<RoutineRecord> routines;
};

}  // namespace quillmate::codedb
