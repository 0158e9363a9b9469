#include "symbol_json.h"

#include <string_view>

#include "json.h"

namespace quillmate::cli {
namespace {

using symbols::ReferenceIndex;

void AppendReference(std::string& json, const ReferenceIndex& index, const symbols::Reference& reference) {
  json += '{';
  AppendModuleJson(json, index, reference.module);
  const bool routine = reference.inRoutine != symbols::kNone;
  AppendMember(json, "routine", routine ? index.Name(reference.inRoutine) : std::string_view());
  AppendMember(json, "routine_kind",
               routine ? symbols::Word(index.SymbolAt(reference.inRoutine).kind) : std::string_view());
  AppendMember(json, "line", index.EditorLine(reference.module, reference.line));
  AppendMember(json, "column", reference.column);
  AppendMember(json, "source_line", index.SourceLine(reference.module, reference.line));
  AppendMember(json, "use", symbols::Word(reference.use));
  AppendMember(json, "certainty", symbols::Word(reference.certainty));
  json.append(",\"implicit\":").append(reference.implicit ? "true" : "false");
  if (reference.candidates > kListedCandidates) AppendMember(json, "candidates", reference.candidates);
  json += '}';
}

}  // namespace

void AppendMember(std::string& json, std::string_view key, std::string_view utf8) {
  json.append(",\"").append(key).append("\":");
  utf8.empty() ? void(json += "null") : AppendJsonUtf8(json, utf8);
}

void AppendMember(std::string& json, std::string_view key, std::uint32_t number) {
  json.append(",\"").append(key).append("\":").append(number == 0 ? "null" : std::to_string(number));
}

void AppendModuleJson(std::string& json, const ReferenceIndex& index, symbols::Index module) {
  const symbols::ModuleInfo& info = index.Modules()[module];
  const std::string& file = info.file.empty() ? index.Projects()[info.project].file : info.file;
  json += "\"file\":";
  file.empty() ? void(json += "null") : AppendJsonUtf8(json, file);
  AppendMember(json, "project", index.Projects()[info.project].name);
  AppendMember(json, "module", info.name);
}

void AppendSymbolJson(std::string& json, const ReferenceIndex& index, symbols::SymbolId id, std::size_t candidates) {
  const symbols::Symbol& symbol = index.SymbolAt(id);
  const auto line = [&](std::uint32_t textLine) { return index.EditorLine(symbol.module, textLine); };
  json += "{\"name\":";
  AppendJsonUtf8(json, index.Name(id));
  AppendMember(json, "kind", symbols::Word(symbol.kind));
  json += ',';
  AppendModuleJson(json, index, symbol.module);
  AppendMember(json, "parent", symbol.parent == symbols::kNone ? std::string_view() : index.Name(symbol.parent));
  AppendMember(json, "visibility", symbols::Word(symbol.visibility));
  AppendMember(json, "type", index.DeclaredType(id));
  AppendMember(json, "line", line(symbol.line));
  AppendMember(json, "column", symbol.column);
  AppendMember(json, "source_line", index.SourceLine(symbol.module, symbol.line));
  const auto [first, last] = index.Extent(id);
  AppendMember(json, "first_line", line(first));
  AppendMember(json, "last_line", line(last));
  const bool implicit = (symbol.flags & symbols::symbol_flag::kImplicit) != 0;
  json.append(",\"implicit\":").append(implicit ? "true" : "false").append(",\"references\":[");
  bool next = false;
  const symbols::ReferenceList list = index.ListReferences(id, candidates);
  for (const symbols::Reference& reference : list.references) {
    if (next) json += ',';
    next = true;
    AppendReference(json, index, reference);
  }
  json += ']';
  if (list.omitted > 0) json.append(",\"omitted\":").append(std::to_string(list.omitted));
  json += '}';
}

}  // namespace quillmate::cli
