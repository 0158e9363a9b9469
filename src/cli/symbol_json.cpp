#include "symbol_json.h"

#include <string_view>

#include "json.h"

namespace quillmate::cli {
namespace {

using symbols::ReferenceIndex;

void AppendText(std::string& json, std::string_view key, std::string_view utf8) {
  json.append(",\"").append(key).append("\":");
  AppendJsonUtf8(json, utf8);
}

void AppendTextOrNull(std::string& json, std::string_view key, std::string_view utf8) {
  if (!utf8.empty()) return AppendText(json, key, utf8);
  json.append(",\"").append(key).append("\":null");
}

/// 0 becomes null.
void AppendNumber(std::string& json, std::string_view key, std::uint32_t number) {
  json.append(",\"").append(key).append("\":").append(number == 0 ? "null" : std::to_string(number));
}

void AppendReference(std::string& json, const ReferenceIndex& index, const symbols::Reference& reference) {
  json += '{';
  AppendModuleJson(json, index, reference.module);
  const bool routine = reference.inRoutine != symbols::kNone;
  AppendTextOrNull(json, "routine", routine ? index.Name(reference.inRoutine) : std::string_view());
  AppendTextOrNull(json, "routine_kind",
                   routine ? symbols::Word(index.SymbolAt(reference.inRoutine).kind) : std::string_view());
  AppendNumber(json, "line", index.EditorLine(reference.module, reference.line));
  AppendNumber(json, "column", reference.column);
  AppendNumber(json, "source_line", index.SourceLine(reference.module, reference.line));
  AppendText(json, "use", symbols::Word(reference.use));
  AppendText(json, "certainty", symbols::Word(reference.certainty));
  json.append(",\"implicit\":").append(reference.implicit ? "true}" : "false}");
}

}  // namespace

void AppendModuleJson(std::string& json, const ReferenceIndex& index, symbols::Index module) {
  const symbols::ModuleInfo& info = index.Modules()[module];
  json += "\"file\":";
  info.file.empty() ? void(json += "null") : AppendJsonUtf8(json, info.file);
  AppendTextOrNull(json, "project", index.Projects()[info.project].name);
  AppendText(json, "module", info.name);
}

void AppendSymbolJson(std::string& json, const ReferenceIndex& index, symbols::SymbolId id) {
  const symbols::Symbol& symbol = index.SymbolAt(id);
  const auto line = [&](std::uint32_t textLine) { return index.EditorLine(symbol.module, textLine); };
  json += "{\"name\":";
  AppendJsonUtf8(json, index.Name(id));
  AppendText(json, "kind", symbols::Word(symbol.kind));
  json += ',';
  AppendModuleJson(json, index, symbol.module);
  AppendTextOrNull(json, "parent", symbol.parent == symbols::kNone ? std::string_view() : index.Name(symbol.parent));
  AppendText(json, "visibility", symbols::Word(symbol.visibility));
  AppendTextOrNull(json, "type", index.DeclaredType(id));
  AppendNumber(json, "line", line(symbol.line));
  AppendNumber(json, "column", symbol.column);
  AppendNumber(json, "source_line", index.SourceLine(symbol.module, symbol.line));
  const auto [first, last] = index.Extent(id);
  AppendNumber(json, "first_line", line(first));
  AppendNumber(json, "last_line", line(last));
  const bool implicit = (symbol.flags & symbols::symbol_flag::kImplicit) != 0;
  json.append(",\"implicit\":").append(implicit ? "true" : "false").append(",\"references\":[");
  bool next = false;
  for (const symbols::Reference& reference : index.ReferencesTo(id)) {
    if (next) json += ',';
    next = true;
    AppendReference(json, index, reference);
  }
  json += "]}";
}

}  // namespace quillmate::cli
