#include <algorithm>
#include <string_view>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/reference_index.h>
#include <quillmate/symbols/unused.h>

#include "fuzz.h"

namespace quillmate::symbols {
namespace {

/// Modules between lines of a form feed; the character after it chooses the kind.
Sources SourcesOf(std::string_view bytes) {
  constexpr language::ModuleKind kKinds[] = {language::ModuleKind::kStandard, language::ModuleKind::kClass,
                                             language::ModuleKind::kForm, language::ModuleKind::kDocument};
  Sources sources;
  sources.projects.emplace_back().name = "P";
  for (char name = 'A';; ++name) {
    const std::size_t end = bytes.find('\f');
    ModuleSource& module = sources.modules.emplace_back();
    module.name = std::string(1, name);
    module.text = bytes.substr(0, end);
    module.kind = kKinds[module.text.size() % 4];
    module.controls.push_back({"txt", "", false});
    if (end == std::string_view::npos || name == 'Z') break;
    bytes.remove_prefix(end + 1);
  }
  sources.bindings.push_back({0, "", "A.A", "Ort"});
  return sources;
}

void CheckSymbol(const ReferenceIndex& index, SymbolId symbol) {
  fuzz::Expect(index.Name(symbol).size() < (std::size_t{1} << 24U));
  index.DeclaredType(symbol);
  const Reference* before = nullptr;
  const std::vector<Reference> references = index.ReferencesTo(symbol);
  for (const Reference& reference : references) {
    const language::Module& code = index.Code(reference.module);
    fuzz::Expect(reference.offset + reference.length <= code.text.size() && reference.line <= code.lines.size());
    fuzz::Expect(before == nullptr || before->module <= reference.module);
    before = &reference;
  }
  for (const CallDirection direction : {CallDirection::kCallers, CallDirection::kCallees}) {
    CallHierarchy(index, symbol, direction, 3);
  }
}

}  // namespace
}  // namespace quillmate::symbols

void quillmate::fuzz::Check(std::string_view bytes) {
  using namespace symbols;
  const ReferenceIndex index = ReferenceIndex::Build(SourcesOf(bytes), {.threads = 1});
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) CheckSymbol(index, symbol);
  for (symbols::Index module = 0; module < index.Modules().size(); ++module) {
    const std::vector<Occurrence> all = index.Occurrences(module);
    Expect(std::is_sorted(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.offset < b.offset; }));
  }
  Expect(FindUnused(index).size() <= index.SymbolCount());
}
