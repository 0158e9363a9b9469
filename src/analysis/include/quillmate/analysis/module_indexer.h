#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>

#include <quillmate/analysis/scanner.h>
#include <quillmate/codedb/code_database.h>

namespace quillmate::analysis {

/// Where a read stands.
struct ReadState {
  /// The module being read: number, name and kind. The reader adds 1 to the number before each module.
  codedb::ModuleRecord module;
  /// The last routine number given in the project, kept up by ScanModule.
  codedb::RoutineNumber lastRoutine;
};

/// A module that the index can't hold. what() is German, UTF-8.
class ModuleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Scans one module in indexing mode: writes its rows into the open database and its marked-up text into `folder`.
/// Throws ModuleError, before anything is written, when a routine's header has more lines than the index can count;
/// codedb::DatabaseError when a statement fails and std::runtime_error when the file can't be written; the
/// caller abandons the read then.
void ScanModule(codedb::CodeDatabase& database, const std::filesystem::path& folder, ReadState& state,
                std::string_view code, const ScanOptions& options);

}  // namespace quillmate::analysis
