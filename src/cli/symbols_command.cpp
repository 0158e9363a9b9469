#include <optional>
#include <string>
#include <string_view>

#include "commands.h"
#include "json.h"
#include "output.h"
#include "symbol_json.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using symbols::ReferenceIndex;
using symbols::SymbolId;

/// Written from time to time, so that the whole is never in memory.
constexpr std::size_t kPiece = std::size_t{1} << 20U;

void WriteJson(const ReferenceIndex& index, Output& output) {
  std::string json;
  JsonLines lines(json);
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    lines.Next();
    AppendSymbolJson(json, index, symbol);
    if (json.size() < kPiece) continue;
    output.Write(json);
    json.clear();
  }
  lines.End();
  output.Write(json += "\n");
}

/// "Modul:Zeile:Spalte Verwendung".
void AppendReference(std::string& text, const ReferenceIndex& index, const symbols::Reference& reference) {
  text.append("    ").append(index.Modules()[reference.module].name);
  text.append(":").append(std::to_string(index.EditorLine(reference.module, reference.line)));
  text.append(":").append(std::to_string(reference.column));
  text.append(" ").append(symbols::GermanWord(reference.use));
  if (reference.certainty != symbols::Certainty::kSure) {
    text.append(" (").append(symbols::GermanWord(reference.certainty)).append(")");
  }
  text += "\n";
}

void WriteText(const ReferenceIndex& index, Output& output) {
  std::string text;
  for (SymbolId id = 0; id < index.SymbolCount(); ++id) {
    const symbols::Symbol& symbol = index.SymbolAt(id);
    text.append(IsModule(symbol.kind) ? "" : "  ").append(symbols::GermanWord(symbol.kind)).append(" ");
    text.append(index.Name(id));
    if (symbol.line > 0) text.append(", Zeile ").append(std::to_string(index.EditorLine(symbol.module, symbol.line)));
    text += "\n";
    const symbols::ReferenceList list = index.ListReferences(id, kListedCandidates);
    for (const symbols::Reference& reference : list.references) AppendReference(text, index, reference);
    if (list.omitted > 0) {
      text.append("    ")
          .append(std::to_string(list.omitted))
          .append(" weitere, die auch viele andere meinen können\n");
    }
    if (text.size() < kPiece) continue;
    output.Write(text);
    text.clear();
  }
  output.Write(text);
}

template <typename Kind, std::size_t count>
void AppendCounts(std::string& text, std::string_view title, const std::uint64_t (&counts)[count]) {
  text.append(title).append("\n");
  for (std::size_t kind = 0; kind < count; ++kind) {
    if (counts[kind] == 0) continue;
    text.append("\t").append(symbols::Word(static_cast<Kind>(kind))).append("\t");
    text.append(std::to_string(counts[kind])).append("\n");
  }
}

void AppendCountsJson(std::string& json, const symbols::ReferenceCounts& counts) {
  json += '{';
  const auto object = [&]<typename Kind, std::size_t count>(std::string_view key, Kind,
                                                            const std::uint64_t(&numbers)[count]) {
    json.append(json.size() > 1 ? ",\"" : "\"").append(key).append("\":{");
    for (std::size_t kind = 0; kind < count; ++kind) {
      json.append(kind > 0 ? ",\"" : "\"").append(symbols::Word(static_cast<Kind>(kind))).append("\":");
      json += std::to_string(numbers[kind]);
    }
    json += '}';
  };
  object("symbols", symbols::SymbolKind{}, counts.symbols);
  object("uses", symbols::Use{}, counts.uses);
  object("certainties", symbols::Certainty{}, counts.certainties);
  json += "}\n";
}

std::string CountText(const ReferenceIndex& index, bool json) {
  const symbols::ReferenceCounts counts = index.Count();
  std::string text;
  if (json) {
    AppendCountsJson(text, counts);
    return text;
  }
  AppendCounts<symbols::SymbolKind>(text, "Deklarationen", counts.symbols);
  AppendCounts<symbols::Use>(text, "Verwendungen", counts.uses);
  AppendCounts<symbols::Certainty>(text, "Gewissheit", counts.certainties);
  return text;
}

}  // namespace

void RunSymbols(const Invocation& invocation) {
  const ReferenceIndex index = ReadUnderstanding(invocation);
  Output output(invocation.output);
  if (invocation.count) {
    output.Write(CountText(index, invocation.json));
  } else if (invocation.json) {
    WriteJson(index, output);
  } else {
    WriteText(index, output);
  }
  output.Finish();
}

}  // namespace quillmate::cli
