#include <algorithm>

#include <quillmate/analysis/unused.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "json.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"
#include "provenance.h"
#include "run_options.h"
#include "unused_exact.h"

namespace quillmate::cli {
namespace {

using analysis::UnusedRoutine;

bool IsOneOf(const UnusedRoutine& routine, const std::vector<std::string>& classes) {
  return std::ranges::find(classes, analysis::UnusedClassName(routine.unused)) != classes.end();
}

std::string UnusedJson(const std::vector<UnusedRoutine>& routines, ProjectInput& input) {
  const Provenance provenance(input.Folder());
  std::string json;
  JsonLines lines(json);
  for (const UnusedRoutine& routine : routines) {
    lines.Next();
    JsonObject object(json);
    object.Number("mod_num", routine.moduleNumber.value)
        .Text("mod_name", routine.moduleName)
        .Text("rou_name", routine.routineName)
        .Text("class", analysis::UnusedClassName(routine.unused));
    provenance.Append(object, json, routine.moduleNumber);
    const auto line = input.Database().StartOf(routine.routineNumber);
    object.Number("source_line", provenance.SourceLine(routine.moduleNumber, line)).End();
  }
  lines.End();
  return json + "\n";
}

/// Each module with its routines and their classes.
std::string UnusedText(const std::vector<UnusedRoutine>& routines) {
  std::string lines;
  codedb::ModuleNumber module;
  for (const UnusedRoutine& routine : routines) {
    if (routine.moduleNumber != module) {
      lines.append(routine.moduleName).append("\n");
      module = routine.moduleNumber;
    }
    lines.append("\t").append(routine.routineName).append(" (").append(analysis::UnusedClassName(routine.unused));
    lines.append(")\n");
  }
  return text::Utf8FromCode(lines);
}

}  // namespace

void RunUnused(const Invocation& invocation) {
  if (invocation.exact || invocation.baseline || invocation.writeBaseline) return RunUnusedExact(invocation);
  ProjectInput input(invocation, RunOptions(invocation));
  std::vector<UnusedRoutine> routines = analysis::FindUnusedRoutines(input.Database(), input.Folder());
  const auto failures = std::ranges::count_if(routines, [&](const auto& r) { return IsOneOf(r, invocation.failOn); });
  if (!invocation.only.empty()) {
    std::erase_if(routines, [&](const UnusedRoutine& r) { return !IsOneOf(r, invocation.only); });
  }
  WriteWhole(invocation.output, invocation.json ? UnusedJson(routines, input) : UnusedText(routines));
  if (failures > 0) {
    throw CommandFailure("Nie aufgerufene Routinen, die es nicht geben soll: " + std::to_string(failures));
  }
}

}  // namespace quillmate::cli
