#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/analysis/unused.h>
#include <quillmate/symbols/index_symbols.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "json.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"
#include "provenance.h"
#include "run_options.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

/// A routine of the fixed list with what the understanding says of it.
struct Unused {
  analysis::UnusedRoutine routine;
  std::optional<codedb::Line> start;
  symbols::Grade grade;
};

std::vector<Unused> ListUnused(ProjectInput& input, int edition) {
  std::vector<Unused> list;
  const auto routines = analysis::FindUnusedRoutines(input.Database(), input.Folder());
  if (routines.empty()) return list;
  const IndexUnderstanding understanding = UnderstandIndex(input, edition);
  const symbols::IndexSymbols known(understanding.index, understanding.places);
  list.reserve(routines.size());
  for (const analysis::UnusedRoutine& routine : routines) {
    const auto start = input.Database().StartOf(routine.routineNumber);
    list.push_back({routine, start, known.GradeOf(routine.moduleNumber, routine.routineName, start).grade});
  }
  return list;
}

bool IsOneOf(const Unused& unused, const std::vector<std::string>& classes) {
  return std::ranges::find(classes, symbols::GermanWord(unused.grade)) != classes.end();
}

std::string UnusedJson(const std::vector<Unused>& list, const Provenance& provenance) {
  std::string json;
  JsonLines lines(json);
  for (const auto& [routine, start, grade] : list) {
    lines.Next();
    JsonObject object(json);
    object.Number("mod_num", routine.moduleNumber.value)
        .Text("mod_name", routine.moduleName)
        .Text("rou_name", routine.routineName)
        .Key("class");
    AppendJsonUtf8(json, symbols::GermanWord(grade));
    provenance.Append(object, json, routine.moduleNumber);
    object.Number("source_line", provenance.SourceLine(routine.moduleNumber, start)).End();
  }
  lines.End();
  return json + "\n";
}

/// Each module with its routines and their classes.
std::string UnusedText(const std::vector<Unused>& list) {
  std::string lines;
  codedb::ModuleNumber module;
  for (const auto& [routine, start, grade] : list) {
    if (routine.moduleNumber != module) {
      lines.append(text::Utf8FromCode(routine.moduleName)).append("\n");
      module = routine.moduleNumber;
    }
    lines.append("\t").append(text::Utf8FromCode(routine.routineName)).append(" (");
    lines.append(symbols::GermanWord(grade)).append(")\n");
  }
  return lines;
}

}  // namespace

void RunUnused(const Invocation& invocation) {
  if (invocation.exact || invocation.baseline || invocation.writeBaseline) return RunUnusedExact(invocation);
  ProjectInput input(invocation, RunOptions(invocation));
  std::vector<Unused> list = ListUnused(input, invocation.edition);
  const auto failures = std::ranges::count_if(list, [&](const auto& u) { return IsOneOf(u, invocation.failOn); });
  if (!invocation.only.empty()) {
    std::erase_if(list, [&](const Unused& u) { return !IsOneOf(u, invocation.only); });
  }
  WriteWhole(invocation.output, invocation.json ? UnusedJson(list, Provenance(input.Folder())) : UnusedText(list));
  if (failures > 0) {
    throw CommandFailure("Nie aufgerufene Routinen, die es nicht geben soll: " + std::to_string(failures));
  }
}

}  // namespace quillmate::cli
