#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include <quillmate/analysis/scanner.h>
#include <quillmate/codedb/code_database.h>

namespace quillmate::analysis {

/// Where a read stands: the counters of the project and the module being read.
struct ReadState {
  /// 16 bit, 1 for the first module; the reader adds 1 before each module.
  int moduleNumber = 0;
  /// Project-wide, kept up by ScanModule.
  std::int64_t routineCounter = 0;
  /// Windows-1252.
  std::string moduleName;
  /// `mod_typ`.
  int moduleKind = 0;
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
