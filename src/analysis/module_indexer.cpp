#include <cstdint>
#include <limits>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::analysis {
namespace {

/// A header's lines are counted in 16 bits.
void CheckFits(const ScanResult& scan) {
  for (const codedb::RoutineRecord& routine : scan.routines) {
    if (routine.headerLines <= std::numeric_limits<std::int16_t>::max()) continue;
    throw ModuleError("Der Kopf der Routine \"" + text::Utf8FromCode(routine.name.substr(0, 40)) + "\" hat " +
                      std::to_string(routine.headerLines) + " Zeilen, das sind zu viele");
  }
}

}  // namespace

void ScanModule(codedb::CodeDatabase& database, const std::filesystem::path& folder, ReadState& state,
                std::string_view code, const ScanOptions& options) {
  ScanResult scan = ScanForIndex(code, options, state.lastRoutine);
  CheckFits(scan);
  state.lastRoutine = scan.last;
  state.module.lines = scan.lineCount;
  for (codedb::RoutineRecord& routine : scan.routines) {
    routine.module = state.module.number;
    database.InsertRoutine(routine);
  }
  for (const RoutineLine& line : scan.lines) {
    line.isStart ? database.UpdateStart(line.routine, line.line) : database.UpdateEnd(line.routine, line.line);
  }
  database.UpdateDeclareEnds(state.module.number);
  database.InsertModule(state.module);
  codedb::WriteModuleText(folder, state.module.number, scan.markedText);
}

}  // namespace quillmate::analysis
