#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/symbols/unused.h>

#include "baseline.h"
#include "commands.h"
#include "json.h"
#include "messages.h"
#include "output.h"
#include "read_files.h"
#include "symbol_json.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using symbols::ReferenceIndex;
using symbols::UnusedSymbol;

constexpr std::string_view kBaselineHead = "quillmate-unbenutzt 1";

/// What stays the same when lines move: project, module, kind, parent and name.
std::string KeyOf(const ReferenceIndex& index, const UnusedSymbol& unused) {
  const symbols::Symbol& symbol = index.SymbolAt(unused.symbol);
  const symbols::ModuleInfo& module = index.Modules()[symbol.module];
  return BaselineKey({index.Projects()[module.project].name, module.name, symbols::Word(symbol.kind),
                      symbol.parent == symbols::kNone ? std::string_view() : index.Name(symbol.parent),
                      index.Name(unused.symbol)});
}

void WriteKeys(const std::string& path, const ReferenceIndex& index, const std::vector<UnusedSymbol>& unused) {
  std::vector<std::string> keys;
  keys.reserve(unused.size());
  for (const UnusedSymbol& one : unused) keys.push_back(KeyOf(index, one));
  WriteBaseline(path, kBaselineHead, std::move(keys));
}

bool IsOneOf(symbols::Grade grade, const std::vector<std::string>& words) {
  return std::ranges::any_of(words, [grade](const std::string& word) { return symbols::GradeFromWord(word) == grade; });
}

std::string Json(const ReferenceIndex& index, const std::vector<UnusedSymbol>& unused) {
  std::string json;
  JsonLines lines(json);
  for (const UnusedSymbol& one : unused) {
    const symbols::Symbol& symbol = index.SymbolAt(one.symbol);
    lines.Next();
    json += '{';
    AppendModuleJson(json, index, symbol.module);
    AppendMember(json, "name", index.Name(one.symbol));
    AppendMember(json, "kind", symbols::Word(symbol.kind));
    AppendMember(json, "parent", symbol.parent == symbols::kNone ? std::string_view() : index.Name(symbol.parent));
    AppendMember(json, "line", index.EditorLine(symbol.module, symbol.line));
    AppendMember(json, "column", symbol.column);
    AppendMember(json, "source_line", index.SourceLine(symbol.module, symbol.line));
    AppendMember(json, "grade", symbols::Word(one.grade));
    AppendMember(json, "reason", one.reason);
    AppendMember(json, "place", one.place);
    json += '}';
  }
  lines.End();
  return json += "\n";
}

/// Each module with what it declares in vain.
std::string Text(const ReferenceIndex& index, const std::vector<UnusedSymbol>& unused) {
  std::string text;
  symbols::Index module = symbols::kNone;
  for (const UnusedSymbol& one : unused) {
    const symbols::Symbol& symbol = index.SymbolAt(one.symbol);
    if (symbol.module != module) text.append(index.Modules()[module = symbol.module].name).append("\n");
    text.append("\t").append(symbols::GermanWord(symbol.kind)).append(" ").append(index.Name(one.symbol));
    if (symbol.parent != symbols::kNone) text.append(" in ").append(index.Name(symbol.parent));
    text.append(", Zeile ").append(std::to_string(index.EditorLine(symbol.module, symbol.line)));
    text.append(" (").append(symbols::GermanWord(one.grade)).append(": ").append(one.reason);
    if (!one.place.empty() && !one.reason.ends_with(one.place)) text.append(", ").append(one.place);
    text += ")\n";
  }
  return text;
}

}  // namespace

void RunUnusedExact(const Invocation& invocation) {
  std::multiset<std::string> known;
  if (invocation.baseline) known = ReadBaseline(*invocation.baseline, kBaselineHead);
  const ReferenceIndex index = ReadUnderstanding(invocation);
  std::vector<UnusedSymbol> unused = symbols::FindUnused(index);
  if (invocation.writeBaseline) WriteKeys(*invocation.writeBaseline, index, unused);
  if (invocation.baseline) {
    std::erase_if(unused, [&](const UnusedSymbol& one) { return TakeKnown(known, KeyOf(index, one)); });
    NoteRead(files::PathFromText(*invocation.baseline));
  }
  const bool anyFails = invocation.baseline && invocation.failOn.empty() && invocation.only.empty();
  const std::vector<std::string>& failing =
      invocation.failOn.empty() && invocation.baseline ? invocation.only : invocation.failOn;
  const auto failures =
      std::ranges::count_if(unused, [&](const auto& u) { return anyFails || IsOneOf(u.grade, failing); });
  if (!invocation.only.empty()) {
    std::erase_if(unused, [&](const UnusedSymbol& u) { return !IsOneOf(u.grade, invocation.only); });
  }
  WriteWhole(invocation.output, invocation.json ? Json(index, unused) : Text(index, unused));
  if (failures > 0) {
    const std::string what =
        invocation.baseline ? "Unbenutztes, das nicht in der Liste steht: " : "Unbenutztes, das es nicht geben soll: ";
    throw CommandFailure(what + std::to_string(failures));
  }
}

}  // namespace quillmate::cli
