#include "findings_output.h"

#include <string_view>

#include <quillmate/export/csv.h>

#include "baseline.h"
#include "json.h"
#include "symbol_json.h"

namespace quillmate::cli {
namespace {

using checks::Check;
using checks::Finding;
using symbols::ReferenceIndex;

std::string_view RoutineOf(const ReferenceIndex& index, const Finding& finding) {
  if (finding.routine == symbols::kNone) return {};
  const language::Module& code = index.Code(finding.module);
  const std::string_view name = code.Spelling(code.declarations[code.routines[finding.routine].declaration]);
  return name;
}

/// The file and the line in it; of a document: its path, the module and the editor's line.
std::string PlaceOf(const ReferenceIndex& index, const Finding& finding) {
  const symbols::ModuleInfo& module = index.Modules()[finding.module];
  const std::string& project = index.Projects()[module.project].file;
  const bool lines = module.linesOfFile && !module.file.empty();
  std::string place = !module.file.empty() ? module.file : project.empty() ? module.name : project + "/" + module.name;
  const std::uint32_t line =
      lines ? index.SourceLine(finding.module, finding.line) : index.EditorLine(finding.module, finding.line);
  if (line != 0) place.append(":").append(std::to_string(line)).append(":").append(std::to_string(finding.column));
  return place;
}

}  // namespace

std::string FindingKey(const ReferenceIndex& index, const Finding& finding) {
  const symbols::ModuleInfo& module = index.Modules()[finding.module];
  return BaselineKey({index.Projects()[module.project].name, module.name, checks::InfoOf(finding.check).id,
                      RoutineOf(index, finding), finding.subject});
}

std::string FindingsText(const ReferenceIndex& index, std::span<const Finding> findings) {
  std::string text;
  for (const Finding& finding : findings) {
    const Check& check = checks::InfoOf(finding.check);
    text.append(PlaceOf(index, finding)).append(": ").append(checks::Word(check.severity)).append(": ");
    text.append(finding.text).append(" [").append(check.id).append("]\n");
  }
  return text;
}

std::string FindingsJson(const ReferenceIndex& index, std::span<const Finding> findings) {
  std::string json;
  JsonLines lines(json);
  for (const Finding& finding : findings) {
    const Check& check = checks::InfoOf(finding.check);
    lines.Next();
    json += "{\"id\":";
    AppendJsonUtf8(json, check.id);
    AppendMember(json, "severity", checks::Word(check.severity));
    json += ',';
    AppendModuleJson(json, index, finding.module);
    AppendMember(json, "routine", RoutineOf(index, finding));
    AppendMember(json, "line", index.EditorLine(finding.module, finding.line));
    AppendMember(json, "column", finding.column);
    AppendMember(json, "source_line", index.SourceLine(finding.module, finding.line));
    AppendMember(json, "text", finding.text);
    AppendMember(json, "advice", finding.advice);
    json += '}';
  }
  lines.End();
  return json += "\n";
}

std::string FindingsCsv(const ReferenceIndex& index, std::span<const Finding> findings) {
  std::string csv(output::kCsvStart);
  output::CsvRow head(csv);
  for (const char* const column : {"Kennung", "Stufe", "Gruppe", "Datei", "Projekt", "Modul", "Routine", "Zeile",
                                   "Spalte", "Zeile der Datei", "Befund", "Was zu tun ist"}) {
    head.Text(column);
  }
  head.End();
  for (const Finding& finding : findings) {
    const Check& check = checks::InfoOf(finding.check);
    const symbols::ModuleInfo& module = index.Modules()[finding.module];
    const auto number = [](std::uint32_t value) { return value == 0 ? std::string() : std::to_string(value); };
    output::CsvRow row(csv);
    row.Text(check.id).Text(checks::Word(check.severity)).Text(checks::Word(check.group));
    row.Text(module.file.empty() ? index.Projects()[module.project].file : module.file);
    row.Text(index.Projects()[module.project].name).Text(module.name).Text(RoutineOf(index, finding));
    row.Text(number(index.EditorLine(finding.module, finding.line))).Text(number(finding.column));
    row.Text(number(index.SourceLine(finding.module, finding.line))).Text(finding.text).Text(finding.advice);
    row.End();
  }
  return csv;
}

std::string ChecksText() {
  std::string text;
  for (std::size_t group = 0; group < checks::kGroupCount; ++group) {
    text.append(group == 0 ? "" : "\n").append(checks::Word(static_cast<checks::Group>(group))).append("\n");
    for (const Check& check : checks::AllChecks()) {
      if (static_cast<std::size_t>(check.group) != group) continue;
      constexpr std::size_t kColumn = 30, kSeverity = 9;
      std::string line = "  " + std::string(check.id);
      line.append(line.size() < kColumn ? kColumn - line.size() : 1, ' ').append(checks::Word(check.severity));
      line.append(kColumn + kSeverity - std::min(line.size(), kColumn + kSeverity - 1), ' ').append(check.title);
      text.append(line).append(check.byDefault ? "\n" : " (nur auf Verlangen)\n");
    }
  }
  return text;
}

std::string ChecksJson() {
  std::string json;
  JsonLines lines(json);
  for (const Check& check : checks::AllChecks()) {
    lines.Next();
    json += "{\"id\":";
    AppendJsonUtf8(json, check.id);
    AppendMember(json, "severity", checks::Word(check.severity));
    AppendMember(json, "group", checks::Word(check.group));
    json.append(",\"default\":").append(check.byDefault ? "true" : "false");
    AppendMember(json, "title", check.title);
    AppendMember(json, "advice", check.advice);
    json += '}';
  }
  lines.End();
  return json += "\n";
}

}  // namespace quillmate::cli
