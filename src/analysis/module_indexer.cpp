#include <cstdint>
#include <limits>

#include <quillmate/analysis/module_indexer.h>
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

ScannedModule::ScannedModule(std::string_view code, const ScanOptions& options)
    : options_(options), scan_(ScanForIndex(code, options, {})) {
  CheckFits(scan_);
  if (scan_.numbersInText) code_ = code;
}

void ScannedModule::Insert(codedb::CodeDatabase& database, ReadState& state) {
  const std::int32_t before = state.lastRoutine.value;
  const bool again = scan_.numbersInText && before != 0;
  if (again) scan_ = ScanForIndex(code_, options_, state.lastRoutine);
  const std::int32_t shift = again ? 0 : before;
  state.lastRoutine.value = scan_.last.value + shift;
  state.module.lines = scan_.lineCount;
  for (codedb::RoutineRecord& routine : scan_.routines) {
    routine.number.value += shift;
    routine.module = state.module.number;
    database.InsertRoutine(routine);
  }
  for (const RoutineLine& line : scan_.lines) {
    const codedb::RoutineNumber routine{line.routine.value + shift};
    line.isStart ? database.UpdateStart(routine, line.line) : database.UpdateEnd(routine, line.line);
  }
  database.UpdateDeclareEnds(state.module.number);
  database.InsertModule(state.module);
}

}  // namespace quillmate::analysis
