#include <algorithm>
#include <functional>
#include <utility>

#include <quillmate/export/outline.h>
#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/search.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "json.h"
#include "messages.h"
#include "names.h"
#include "output.h"
#include "project_input.h"
#include "provenance.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

const std::string& Required(const std::optional<std::string>& value, std::string_view option) {
  if (!value) {
    throw UsageError("Es fehlt die Option " + std::string(option));
  }
  return *value;
}

/// The name of a routine of a module as it is spelled there; the name itself when there is none, or one of just that
/// spelling.
std::string SpelledName(codedb::CodeDatabase& database, codedb::ModuleNumber module, const std::string& name) {
  const auto routines = database.RoutinesNamed(name, module);
  const bool sameSpelling = std::ranges::find(routines, name, &codedb::RoutineRecord::name) != routines.end();
  return sameSpelling || routines.empty() ? name : routines.front().name;
}

navigation::ProjectTree FindCallers(ProjectInput& input, codedb::ModuleNumber module, const std::string& routine) {
  codedb::CodeDatabase& database = input.Database();
  const auto name = CodeName(routine);
  if (!name) {
    throw CommandFailure(std::string(navigation::ScopeMessage(navigation::CallerScope::kUnknown)) + ": " + routine);
  }
  navigation::ProjectTexts texts;
  texts.Load(input.Folder(), database.ModuleCount());
  auto callers = navigation::FindCallers(database, texts, codedb::ViewOf(module), SpelledName(database, module, *name));
  const std::string_view message = navigation::ScopeMessage(callers.scope);
  if (!message.empty()) {
    throw CommandFailure(std::string(message) + ": " + routine);
  }
  return std::move(callers.tree);
}

std::string CallersJson(const std::vector<navigation::TreeNode>& nodes, ProjectInput& input) {
  const Provenance provenance(input.Folder());
  std::string json;
  JsonLines modules(json);
  for (std::size_t i = 0; i < nodes.size();) {
    modules.Next();
    JsonObject module(json);
    module.Number("mod_num", nodes[i].module.value).Text("mod_name", nodes[i].text);
    const codedb::ModuleNumber number = nodes[i].module;
    provenance.Append(module, json, number);
    module.Key("routines");
    JsonLines routines(json);
    for (++i; i < nodes.size() && nodes[i].parent >= 0; ++i) {
      routines.Next();
      const auto line = input.Database().StartOf(nodes[i].routine);
      JsonObject(json)
          .Number("rou_num", nodes[i].routine.value)
          .Text("rou_name", nodes[i].text)
          .Number("source_line", provenance.SourceLine(number, line))
          .End();
    }
    routines.End();
    module.End();
  }
  modules.End();
  return json + "\n";
}

std::string CallersText(const std::vector<navigation::TreeNode>& nodes) {
  std::vector<output::OutlineNode> outline;
  outline.reserve(nodes.size());
  for (const navigation::TreeNode& node : nodes) {
    outline.push_back({node.text, node.parent});
  }
  return text::Utf8FromCode(text::ReplaceAll(output::BuildOutline(outline), text::kLineBreak, "\n"));
}

std::string DefinitionJson(const navigation::Definition& found, const std::string& moduleName,
                           const Provenance& provenance) {
  std::string json;
  const auto line = found.startLine.value > 0 ? std::optional(found.startLine) : std::nullopt;
  JsonObject object(json);
  object.Number("mod_num", found.moduleNumber.value).Text("mod_name", moduleName);
  object.Number("rou_start", line ? std::optional(std::int64_t{line->value}) : std::nullopt);
  provenance.Append(object, json, found.moduleNumber);
  object.Number("source_line", provenance.SourceLine(found.moduleNumber, line)).End();
  return json + "\n";
}

std::string DefinitionText(const navigation::Definition& found, const std::string& moduleName) {
  return text::Utf8FromCode(moduleName) + ":" + std::to_string(found.startLine.value) + "\n";
}

}  // namespace

void RunCallers(const Invocation& invocation) {
  const std::string& module = Required(invocation.module, "--module");
  const std::string& routine = Required(invocation.routine, "--routine");
  ProjectInput input(invocation, RunOptions(invocation));
  const auto tree = FindCallers(input, FindModule(input, module), routine);
  WriteWhole(invocation.output, invocation.json ? CallersJson(tree.nodes, input) : CallersText(tree.nodes));
}

void RunDefinition(const Invocation& invocation) {
  const std::string& module = Required(invocation.module, "--module");
  const std::string& name = Required(invocation.name, "--name");
  ProjectInput input(invocation, RunOptions(invocation));
  codedb::CodeDatabase& database = input.Database();
  const codedb::ModuleNumber from = FindModule(input, module);
  const auto code = CodeName(name);
  const auto found = code ? navigation::FindDefinition(database, codedb::ViewOf(from), *code) : std::nullopt;
  if (!found) {
    if (invocation.json) {
      WriteWhole(invocation.output, "null\n");
    }
    throw CommandFailure("Vom Modul " + Quoted(module) + " aus ist keine Routine " + Quoted(name) + " zu sehen");
  }
  const std::string moduleName = ModuleName(database, found->moduleNumber);
  WriteWhole(invocation.output, invocation.json ? DefinitionJson(*found, moduleName, Provenance(input.Folder()))
                                                : DefinitionText(*found, moduleName));
}

}  // namespace quillmate::cli
