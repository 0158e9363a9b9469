#include <algorithm>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/reference_index.h>

#include "commands.h"
#include "editor_place.h"
#include "json.h"
#include "messages.h"
#include "names.h"
#include "output.h"
#include "symbol_json.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using symbols::CallNode;
using symbols::ReferenceIndex;
using symbols::SymbolId;

const std::string& Required(const std::optional<std::string>& value, std::string_view option) {
  if (!value) throw UsageError("Es fehlt die Option " + std::string(option));
  return *value;
}

/// What a name of a module means: what the module declares under it, else what it uses under it.
std::vector<SymbolId> MeaningsOf(const ReferenceIndex& index, symbols::Index module, const std::string& name) {
  std::vector<SymbolId> found = index.FindSymbols(module, name);
  if (!found.empty()) return found;
  for (const symbols::Occurrence& occurrence : index.Occurrences(module)) {
    for (const SymbolId target : occurrence.targets) {
      const std::vector<SymbolId> same = index.FindSymbols(index.SymbolAt(target).module, name);
      if (std::ranges::find(same, target) != same.end()) found.push_back(target);
    }
  }
  std::ranges::sort(found);
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

std::vector<SymbolId> Asked(const ReferenceIndex& index, const Invocation& invocation) {
  const symbols::Index module = FindModule(index, Required(invocation.module, "--module"));
  if (invocation.name) {
    std::vector<SymbolId> found = MeaningsOf(index, module, *invocation.name);
    if (found.empty()) throw CommandFailure("Name nicht gefunden: " + *invocation.name);
    return found;
  }
  if (invocation.line == 0 || invocation.column == 0) throw UsageError("Es fehlt --name oder --line und --column");
  const std::uint32_t line = index.Code(module).LineOfEditorLine(invocation.line);
  std::optional<symbols::Occurrence> there = index.NameAt(module, line, invocation.column);
  if (!there) throw CommandFailure("Dort steht kein Name, den der Code deklariert");
  return std::move(there->targets);
}

std::string PlaceText(const ReferenceIndex& index, symbols::Index module, std::uint32_t line, std::uint32_t column) {
  const symbols::ModuleInfo& info = index.Modules()[module];
  const std::uint32_t source = index.SourceLine(module, line);
  const bool ownFile = source > 0 && !info.file.empty();
  return EditorPlaceLine(ownFile ? info.file : info.name, ownFile ? source : index.EditorLine(module, line), column,
                         index.Code(module).LineText(line));
}

/// All uses of a few declarations; of many, those that may mean any of them are not repeated for each.
std::size_t CandidatesFor(const std::vector<SymbolId>& declarations) {
  return declarations.size() > kListedCandidates ? kListedCandidates : std::numeric_limits<std::size_t>::max();
}

/// One place on each line, the declarations' own included: the usual form and the one of editors alike. A place that
/// may mean several of them comes once. Written one by one, since each brings its whole line.
void WriteReferences(const ReferenceIndex& index, const std::vector<SymbolId>& declarations, Output& output) {
  std::set<std::pair<symbols::Index, std::uint32_t>> written;
  for (const SymbolId id : declarations) {
    const symbols::Symbol& symbol = index.SymbolAt(id);
    if (symbol.line > 0) output.Write(PlaceText(index, symbol.module, symbol.line, symbol.column));
    for (const symbols::Reference& reference : index.ListReferences(id, CandidatesFor(declarations)).references) {
      if (!written.emplace(reference.module, reference.offset).second) continue;
      output.Write(PlaceText(index, reference.module, reference.line, reference.column));
    }
  }
}

std::string ReferencesJson(const ReferenceIndex& index, const std::vector<SymbolId>& declarations) {
  std::string json = "{\"declarations\":";
  JsonLines lines(json);
  for (const SymbolId symbol : declarations) {
    lines.Next();
    AppendSymbolJson(json, index, symbol, CandidatesFor(declarations));
  }
  lines.End();
  return json += "}\n";
}

SymbolId AskedRoutine(const ReferenceIndex& index, const Invocation& invocation) {
  const symbols::Index module = FindModule(index, Required(invocation.module, "--module"));
  for (const SymbolId symbol : index.FindSymbols(module, Required(invocation.routine, "--routine"))) {
    if (IsCallable(index.SymbolAt(symbol).kind)) return symbol;
  }
  throw CommandFailure("Routine nicht gefunden: " + *invocation.routine);
}

void AppendNodeJson(std::string& json, const ReferenceIndex& index, const CallNode& node) {
  if (node.edge.routine == symbols::kNone) {
    json += "{\"host\":";
    AppendJsonUtf8(json, node.edge.host);
  } else {
    const symbols::Symbol& symbol = index.SymbolAt(node.edge.routine);
    json += '{';
    AppendModuleJson(json, index, symbol.module);
    AppendMember(json, "routine", index.Name(node.edge.routine));
    AppendMember(json, "routine_kind", symbols::Word(symbol.kind));
    AppendMember(json, "line", index.EditorLine(symbol.module, symbol.line));
  }
}

std::string CallsJson(const ReferenceIndex& index, const std::vector<CallNode>& nodes, bool down) {
  std::string json;
  std::size_t open = 0;
  for (std::size_t at = 0; at < nodes.size(); ++at) {
    const CallNode& node = nodes[at];
    for (; open > node.depth; --open) json += "]}";
    if (at > 0 && nodes[at - 1].depth >= node.depth) json += ",\n";
    AppendNodeJson(json, index, node);
    if (node.parent != symbols::kNone) {
      // The calling lines belong to the caller.
      const SymbolId caller = down ? nodes[node.parent].edge.routine : node.edge.routine;
      AppendMember(json, "certainty", symbols::Word(node.edge.certainty));
      json += ",\"lines\":[";
      for (std::size_t line = 0; line < node.edge.lines.size(); ++line) {
        if (line > 0) json += ',';
        json += std::to_string(index.EditorLine(index.SymbolAt(caller).module, node.edge.lines[line]));
      }
      json.append("],\"cycle\":").append(node.cycle ? "true" : "false");
    }
    json += ",\"calls\":[";
    ++open;
  }
  for (; open > 0; --open) json += "]}";
  return json += "\n";
}

std::string RoutineText(const ReferenceIndex& index, const CallNode& node) {
  if (node.edge.routine == symbols::kNone) return node.edge.host;
  const symbols::Symbol& symbol = index.SymbolAt(node.edge.routine);
  return index.Modules()[symbol.module].name + "." + std::string(index.Name(node.edge.routine));
}

std::string DotName(std::string_view text) {
  std::string name = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') name += '\\';
    name += c == '\n' || c == '\r' ? ' ' : c;
  }
  return name + "\"";
}

/// A graph of the DOT language: each edge once, from who calls to who is called; possible ones dashed.
std::string CallsGraph(const ReferenceIndex& index, const std::vector<CallNode>& nodes, bool down) {
  std::vector<std::string> edges;
  for (const CallNode& node : nodes) {
    if (node.parent == symbols::kNone) continue;
    const std::string above = DotName(RoutineText(index, nodes[node.parent]));
    const std::string below = DotName(RoutineText(index, node));
    std::string edge = "  " + (down ? above + " -> " + below : below + " -> " + above);
    if (node.edge.certainty != symbols::Certainty::kSure) edge += " [style=dashed]";
    edges.push_back(edge + ";\n");
  }
  std::ranges::sort(edges);
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  std::string graph = "digraph Aufrufe {\n  rankdir=LR;\n  node [shape=box];\n";
  graph += "  " + DotName(RoutineText(index, nodes.front())) + ";\n";
  for (const std::string& edge : edges) graph += edge;
  return graph + "}\n";
}

std::string CallsText(const ReferenceIndex& index, const std::vector<CallNode>& nodes, bool down) {
  std::string text;
  for (const CallNode& node : nodes) {
    text.append(node.depth, '\t');
    if (node.edge.routine == symbols::kNone) {
      text.append(node.edge.host).append("\n");
      continue;
    }
    const symbols::Symbol& symbol = index.SymbolAt(node.edge.routine);
    text.append(index.Modules()[symbol.module].name).append(".").append(index.Name(node.edge.routine));
    for (std::size_t line = 0; line < node.edge.lines.size(); ++line) {
      const SymbolId caller = down ? nodes[node.parent].edge.routine : node.edge.routine;
      text.append(line == 0 ? ", Zeile " : ", ");
      text += std::to_string(index.EditorLine(index.SymbolAt(caller).module, node.edge.lines[line]));
    }
    if (node.edge.certainty != symbols::Certainty::kSure) {
      text.append(" (").append(symbols::GermanWord(node.edge.certainty)).append(")");
    }
    if (node.cycle) text += " (steht schon darüber)";
    if (node.repeated) text += " (siehe oben)";
    text += "\n";
  }
  return text;
}

}  // namespace

void RunReferences(const Invocation& invocation) {
  Required(invocation.module, "--module");
  const ReferenceIndex index = ReadUnderstanding(invocation);
  const std::vector<SymbolId> declarations = Asked(index, invocation);
  Output output(invocation.output);
  if (invocation.json) {
    output.Write(ReferencesJson(index, declarations));
  } else {
    WriteReferences(index, declarations, output);
  }
  output.Finish();
}

void RunCalls(const Invocation& invocation) {
  Required(invocation.module, "--module");
  Required(invocation.routine, "--routine");
  const ReferenceIndex index = ReadUnderstanding(invocation);
  const auto direction = invocation.down ? symbols::CallDirection::kCallees : symbols::CallDirection::kCallers;
  const std::vector<CallNode> nodes =
      symbols::CallHierarchy(index, AskedRoutine(index, invocation), direction, invocation.depth.value_or(UINT32_MAX));
  WriteWhole(invocation.output, (invocation.json  ? CallsJson
                                 : invocation.dot ? CallsGraph
                                                  : CallsText)(index, nodes, invocation.down));
}

}  // namespace quillmate::cli
