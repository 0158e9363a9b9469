#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/collation.h>
#include <quillmate/symbols/exact_routines.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "json.h"
#include "module_list.h"
#include "outline_text.h"
#include "output.h"
#include "provenance.h"
#include "symbol_json.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using symbols::ExactName;
using symbols::ExactRoutine;
using symbols::ExactRoutines;
using symbols::IndexKind;
using symbols::IndexVisibility;
using symbols::ReferenceIndex;

void AppendRoutine(std::string& json, const ReferenceIndex& index, symbols::Index module, const ExactRoutine& routine,
                   std::int64_t number) {
  const language::Module& code = index.Code(module);
  const language::Declaration& declaration = code.declarations[routine.declaration];
  json += "{\"rou_num\":" + std::to_string(number);
  AppendMember(json, "rou_name", ExactName(code, routine));
  AppendMember(json, "rou_typ", static_cast<std::uint32_t>(IndexKind(declaration.kind)));
  AppendMember(json, "rou_open", static_cast<std::uint32_t>(IndexVisibility(declaration.visibility)));
  AppendMember(json, "anz_dec_zeilen", routine.headerLast - routine.first + 1);
  AppendMember(json, "rou_start", index.EditorLine(module, routine.first));
  AppendMember(json, "rou_ende", index.EditorLine(module, routine.last));
  AppendMember(json, "source_line", index.SourceLine(module, routine.first));
  json += '}';
}

std::int64_t LinesOf(const ReferenceIndex& index, symbols::Index module) {
  const auto lines = static_cast<std::uint32_t>(index.Code(module).lines.size());
  std::int64_t last = 0;
  for (std::uint32_t line = lines; line > 0 && last == 0; --line) last = index.EditorLine(module, line);
  return last;
}

std::string Json(const ReferenceIndex& index) {
  std::string json;
  JsonObject object(json);
  object.Key("modules");
  JsonLines modules(json);
  std::int64_t number = 0;
  for (symbols::Index i = 0; i < index.Modules().size(); ++i) {
    modules.Next();
    json += '{';
    AppendModuleJson(json, index, i);
    AppendMember(json, "mod_num", i + 1);
    AppendMember(json, "mod_name", index.Modules()[i].name);
    AppendMember(json, "mod_typ", static_cast<std::uint32_t>(IndexKind(index.Modules()[i].kind)));
    json += ",\"mod_zeilen\":" + std::to_string(LinesOf(index, i)) + ",\"routines\":";
    JsonLines routines(json);
    for (const ExactRoutine& routine : ExactRoutines(index.Code(i))) {
      routines.Next();
      AppendRoutine(json, index, i, routine, ++number);
    }
    routines.End();
    json += '}';
  }
  modules.End();
  AppendSources(object, json, index.Projects(), index.Omissions());
  object.End();
  return json + "\n";
}

/// The rows of the index, as its table shows them.
std::vector<codedb::ModuleRecord> Records(const ReferenceIndex& index) {
  std::vector<codedb::ModuleRecord> records;
  codedb::RoutineNumber number;
  for (symbols::Index i = 0; i < index.Modules().size(); ++i) {
    codedb::ModuleRecord& module = records.emplace_back();
    module.number = {static_cast<std::int32_t>(i) + 1};
    module.name = text::CodeFromUtf8(index.Modules()[i].name);
    module.kind = IndexKind(index.Modules()[i].kind);
    module.lines = static_cast<std::int32_t>(LinesOf(index, i));
    const language::Module& code = index.Code(i);
    for (const ExactRoutine& found : ExactRoutines(code)) {
      codedb::RoutineRecord& routine = module.routines.emplace_back();
      const language::Declaration& declaration = code.declarations[found.declaration];
      ++number.value;
      routine.number = number;
      routine.name = text::CodeFromUtf8(ExactName(code, found));
      routine.kind = IndexKind(declaration.kind);
      routine.visibility = IndexVisibility(declaration.visibility);
      routine.headerLines = static_cast<int>(found.headerLast - found.first + 1);
      routine.start = codedb::Line{static_cast<std::int32_t>(index.EditorLine(i, found.first))};
      routine.end = codedb::Line{static_cast<std::int32_t>(index.EditorLine(i, found.last))};
    }
  }
  return records;
}

/// Modules by kind and name, routines by name, as everywhere else.
std::vector<OutlineModule> OutlineModules(const ReferenceIndex& index) {
  const auto byName = [](const auto& a, const auto& b) { return codedb::CompareText(a, b) < 0; };
  std::vector<symbols::Index> modules(index.Modules().size());
  std::iota(modules.begin(), modules.end(), symbols::Index{0});
  std::ranges::stable_sort(modules, [&](symbols::Index a, symbols::Index b) {
    const int kinds = IndexKind(index.Modules()[a].kind) - IndexKind(index.Modules()[b].kind);
    return kinds != 0 ? kinds < 0 : byName(index.Modules()[a].name, index.Modules()[b].name);
  });
  std::vector<OutlineModule> outline;
  for (const symbols::Index module : modules) {
    const symbols::ModuleInfo& info = index.Modules()[module];
    const symbols::ProjectInfo& project = index.Projects()[info.project];
    std::vector<std::string> names;
    const language::Module& code = index.Code(module);
    for (const ExactRoutine& routine : ExactRoutines(code)) names.push_back(ExactName(code, routine));
    std::ranges::stable_sort(names, byName);
    outline.push_back(
        {ProjectHeading(project.name, project.file, info.file), std::int64_t{module}, info.name, std::move(names)});
  }
  return outline;
}

}  // namespace

void RunModulesExact(const Invocation& invocation) {
  const ReferenceIndex index = ReadUnderstanding(invocation);
  WriteWhole(invocation.output, invocation.json ? Json(index) : ModuleTable(Records(index)));
}

void RunOutlineExact(const Invocation& invocation) {
  const ReferenceIndex index = ReadUnderstanding(invocation);
  WriteWhole(invocation.output, OutlineText(OutlineModules(index)));
}

}  // namespace quillmate::cli
