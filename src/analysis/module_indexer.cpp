#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::analysis {
namespace {

using Words = files::ReasonWords<ModuleReason>;

constexpr std::array kWords{
    Words{ModuleReason::kManyRoutines, "Das Modul hat mehr als 1.000.000 Routinen, das sind zu viele"},
    Words{ModuleReason::kLongHeader, "Der Kopf der Routine \"%1\" hat %2 Zeilen, das sind zu viele"},
};
static_assert(files::IsComplete(kWords, ModuleReason::kLongHeader));

/// A header's lines are counted in 16 bits.
void CheckFits(const ScanResult& scan) {
  for (const codedb::RoutineRecord& routine : scan.routines) {
    if (routine.headerLines <= std::numeric_limits<std::int16_t>::max()) continue;
    throw files::Failure(ModuleReason::kLongHeader, {},
                         {text::Utf8FromCode(routine.name.substr(0, 40)), std::to_string(routine.headerLines)});
  }
}

/// Fills in the lines of the routines. A Declare ends with its header.
void SetLines(ScanResult& scan) {
  for (const RoutineLine& line : scan.lines) {
    const auto routine = std::ranges::lower_bound(scan.routines, line.routine, {}, &codedb::RoutineRecord::number);
    if (routine == scan.routines.end() || routine->number != line.routine) continue;
    (line.isStart ? routine->start : routine->end) = line.line;
  }
  for (codedb::RoutineRecord& routine : scan.routines) {
    if (!codedb::IsDeclare(routine.kind)) continue;
    routine.end = routine.start;
    if (routine.end) routine.end->value += routine.headerLines - 1;
  }
}

}  // namespace

std::error_code make_error_code(ModuleReason reason) noexcept {
  static const files::ReasonCategory category("analysis", kWords);
  return {static_cast<int>(reason), category};
}

ScannedModule::ScannedModule(std::string_view code, const ScanOptions& options)
    : options_(options), scan_(ScanForIndex(code, options, {})) {
  CheckFits(scan_);
  if (scan_.numbersInText) code_ = code;
}

std::size_t ScannedModule::Size() const noexcept {
  return scan_.markedText.size() + code_.size() + scan_.routines.size() * sizeof(codedb::RoutineRecord) +
         scan_.lines.size() * sizeof(RoutineLine);
}

void ScannedModule::Insert(codedb::CodeDatabase& database, ReadState& state) {
  const std::int32_t before = state.lastRoutine.value;
  const bool again = scan_.numbersInText && before != 0;
  if (again) scan_ = ScanForIndex(code_, options_, state.lastRoutine);
  const std::int32_t shift = again ? 0 : before;
  state.lastRoutine.value = scan_.last.value + shift;
  state.module.lines = scan_.lineCount;
  SetLines(scan_);
  for (codedb::RoutineRecord& routine : scan_.routines) {
    routine.number.value += shift;
    routine.module = state.module.number;
    database.InsertRoutine(routine);
  }
  database.InsertModule(state.module);
  // The text may have to wait until it is written.
  scan_.routines = {};
  scan_.lines = {};
}

}  // namespace quillmate::analysis
