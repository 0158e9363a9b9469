#pragma once

#include <string>
#include <string_view>

#include <quillmate/analysis/scanner.h>
#include <quillmate/codedb/code_database.h>

namespace quillmate::analysis {

/// How far a read has come.
struct ReadState {
  /// The module being read: number, name and kind. The reader adds 1 to the number before each module.
  codedb::ModuleRecord module;
  /// The last routine number given in the project, kept up by ScannedModule.
  codedb::RoutineNumber lastRoutine;
};

/// A module scanned for the index, on any thread and before it is known which numbers its routines get.
class ScannedModule {
 public:
  /// Throws files::Failure when a routine's header has more lines than the index can count, or the module too many
  /// routines.
  ScannedModule(std::string_view code, const ScanOptions& options);

  /// Numbers the routines on from those of the modules before it and writes its rows into the open database. Once.
  /// Throws files::Failure; the caller abandons the read then.
  void Insert(codedb::CodeDatabase& database, ReadState& state);

  /// The marked-up text; in a module with ScanResult::numbersInText not before Insert.
  const std::string& MarkedText() const noexcept { return scan_.markedText; }
  /// About how many bytes it holds.
  std::size_t Size() const noexcept;

 private:
  ScanOptions options_;
  ScanResult scan_;
  /// Only where it has to be scanned once more.
  std::string code_;
};

}  // namespace quillmate::analysis
