#include <array>
#include <string>
#include <string_view>

#include <quillmate/checks/metrics.h>
#include <quillmate/export/csv.h>

#include "commands.h"
#include "json.h"
#include "messages.h"
#include "output.h"
#include "symbol_json.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using checks::Metrics;
using checks::ModuleNumbers;
using checks::RoutineNumbers;
using symbols::ReferenceIndex;

/// In the order of the definitions.
std::array<std::uint32_t, 4> Numbers(const ModuleNumbers& module) {
  return {module.lines, module.code, module.comment, module.blank};
}

std::array<std::uint32_t, 9> Numbers(const RoutineNumbers& routine) {
  return {routine.lines,   routine.code,       routine.comment, routine.statements, routine.complexity,
          routine.nesting, routine.parameters, routine.fanIn,   routine.fanOut};
}

const symbols::Symbol& SymbolOf(const ReferenceIndex& index, const RoutineNumbers& routine) {
  return index.SymbolAt(index.RoutineSymbol(routine.module, routine.routine));
}

std::string_view NameOf(const ReferenceIndex& index, const RoutineNumbers& routine) {
  return index.Name(index.RoutineSymbol(routine.module, routine.routine));
}

std::uint32_t LineOf(const ReferenceIndex& index, const RoutineNumbers& routine) {
  return index.EditorLine(routine.module, SymbolOf(index, routine).line);
}

/// Calls visit(module, its routines) for every module.
template <typename Visit>
void ForEachModule(const Metrics& metrics, Visit visit) {
  auto first = metrics.routines.begin();
  for (symbols::Index module = 0; module < metrics.modules.size(); ++module) {
    auto end = first;
    while (end != metrics.routines.end() && end->module == module) ++end;
    visit(module, std::span(first, end));
    first = end;
  }
}

template <typename Definitions, typename Values>
void AppendNumbers(std::string& json, const Definitions& definitions, const Values& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    json.append(",\"").append(definitions[i].key).append("\":").append(std::to_string(values[i]));
  }
}

void AppendDefinitions(std::string& json, std::string_view key, std::span<const checks::MetricDefinition> definitions) {
  json.append("\"").append(key).append("\":{");
  for (const checks::MetricDefinition& definition : definitions) {
    if (json.back() != '{') json += ',';
    AppendJsonUtf8(json, definition.key);
    json += ':';
    AppendJsonUtf8(json, definition.definition);
  }
  json += '}';
}

std::string Json(const ReferenceIndex& index, const Metrics& metrics) {
  std::string json = "{\"modules\":";
  JsonLines lines(json);
  ForEachModule(metrics, [&](symbols::Index module, std::span<const RoutineNumbers> routines) {
    lines.Next();
    json += '{';
    AppendModuleJson(json, index, module);
    AppendNumbers(json, checks::kModuleDefinitions, Numbers(metrics.modules[module]));
    json += ",\"routines\":[";
    for (const RoutineNumbers& routine : routines) {
      json.append(&routine == routines.data() ? "" : ",").append("{\"routine\":");
      AppendJsonUtf8(json, NameOf(index, routine));
      AppendMember(json, "routine_kind", symbols::Word(SymbolOf(index, routine).kind));
      AppendMember(json, "line", LineOf(index, routine));
      AppendNumbers(json, checks::kRoutineDefinitions, Numbers(routine));
      json += '}';
    }
    json += "]}";
  });
  lines.End();
  json += ",\n\"definitions\":{";
  AppendDefinitions(json, "modules", checks::kModuleDefinitions);
  json += ',';
  AppendDefinitions(json, "routines", checks::kRoutineDefinitions);
  return json += "}}\n";
}

/// One row for each module, without a routine, and for each routine.
std::string Csv(const ReferenceIndex& index, const Metrics& metrics) {
  std::string csv(output::kCsvStart);
  output::CsvRow head(csv);
  for (const char* const column : {"Datei", "Projekt", "Modul", "Routine", "Art", "Zeile"}) head.Text(column);
  for (std::size_t i = 0; i < 3; ++i) head.Text(checks::kRoutineDefinitions[i].name);
  head.Text(checks::kModuleDefinitions[3].name);
  for (std::size_t i = 3; i < std::size(checks::kRoutineDefinitions); ++i)
    head.Text(checks::kRoutineDefinitions[i].name);
  head.End();
  ForEachModule(metrics, [&](symbols::Index module, std::span<const RoutineNumbers> routines) {
    const symbols::ModuleInfo& info = index.Modules()[module];
    const std::string& project = index.Projects()[info.project].name;
    output::CsvRow row(csv);
    row.Text(info.file).Text(project).Text(info.name).Text("");
    row.Text(symbols::GermanWord(index.SymbolAt(info.symbol).kind)).Text("");
    for (const std::uint32_t number : Numbers(metrics.modules[module])) row.Number(number);
    for (int i = 0; i < 6; ++i) row.Text("");
    row.End();
    for (const RoutineNumbers& routine : routines) {
      output::CsvRow cells(csv);
      cells.Text(info.file).Text(project).Text(info.name).Text(NameOf(index, routine));
      cells.Text(symbols::GermanWord(SymbolOf(index, routine).kind)).Number(LineOf(index, routine));
      const auto numbers = Numbers(routine);
      for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i == 3) cells.Text("");
        cells.Number(numbers[i]);
      }
      cells.End();
    }
  });
  return csv;
}

template <typename Definitions, typename Values>
std::string Listed(const Definitions& definitions, const Values& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) {
    text.append(text.empty() ? "" : ", ").append(definitions[i].name).append(" ").append(std::to_string(values[i]));
  }
  return text;
}

std::string Text(const ReferenceIndex& index, const Metrics& metrics) {
  std::string text;
  ForEachModule(metrics, [&](symbols::Index module, std::span<const RoutineNumbers> routines) {
    text.append(index.Modules()[module].name).append(": ");
    text.append(Listed(checks::kModuleDefinitions, Numbers(metrics.modules[module]))).append("\n");
    for (const RoutineNumbers& routine : routines) {
      text.append("\t").append(NameOf(index, routine)).append(", Zeile ");
      text.append(std::to_string(LineOf(index, routine))).append(": ");
      text.append(Listed(checks::kRoutineDefinitions, Numbers(routine))).append("\n");
    }
  });
  text += "\nZahlen der Routinen:\n";
  for (const checks::MetricDefinition& definition : checks::kRoutineDefinitions) {
    text.append("  ").append(definition.name).append(": ").append(definition.definition).append("\n");
  }
  text += "Zahlen der Module:\n";
  for (const checks::MetricDefinition& definition : checks::kModuleDefinitions) {
    text.append("  ").append(definition.name).append(": ").append(definition.definition).append("\n");
  }
  return text;
}

}  // namespace

void RunMetrics(const Invocation& invocation) {
  if (invocation.json && invocation.csv) throw UsageError("--json und --csv schließen sich aus");
  const ReferenceIndex index = ReadUnderstanding(invocation);
  const Metrics metrics = checks::Measure(index);
  WriteWhole(invocation.output, invocation.json  ? Json(index, metrics)
                                : invocation.csv ? Csv(index, metrics)
                                                 : Text(index, metrics));
}

}  // namespace quillmate::cli
