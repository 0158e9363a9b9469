#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/index_symbols.h>
#include <quillmate/symbols/unused.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::symbols {
namespace {

std::uint32_t FirstLine(const ReferenceIndex& index, SymbolId id) {
  const Symbol& symbol = index.SymbolAt(id);
  if (symbol.kind != SymbolKind::kDeclare || symbol.declaration == kNone) return index.Extent(id).first;
  return index.Code(symbol.module).declarations[symbol.declaration].firstLine;
}

}  // namespace

IndexSymbols::IndexSymbols(const ReferenceIndex& index, std::span<const ModulePlaces> places)
    : index_(index), places_(places), routines_(index.Modules().size()) {
  for (Index module = 0; module < index.Modules().size() && module < places.size(); ++module) {
    if (places[module].Number() == 0) continue;
    modules_.try_emplace(places[module].Number(), module);
    const ModuleInfo& info = index.Modules()[module];
    for (SymbolId id = info.symbol; id < info.endSymbol; ++id) {
      if (!IsCallable(index.SymbolAt(id).kind)) continue;
      const std::uint32_t line = places[module].ShownLine(FirstLine(index, id));
      if (line > 0) routines_[module].push_back({line, id});
    }
    std::ranges::stable_sort(routines_[module], {}, &Routine::line);
  }
}

Index IndexSymbols::ModuleAt(codedb::ModuleNumber module) const {
  const auto found = modules_.find(module.value);
  return found == modules_.end() ? kNone : found->second;
}

SymbolId IndexSymbols::RoutineAt(codedb::ModuleNumber module, std::string_view name,
                                 std::optional<codedb::Line> start) const {
  const Index number = ModuleAt(module);
  if (number == kNone) return kNone;
  const std::string folded = language::FoldName(text::Utf8FromCode(name));
  const auto isNamed = [&](SymbolId id) { return language::FoldName(index_.Name(id)) == folded; };
  if (start && start->value > 0) {
    const auto line = static_cast<std::uint32_t>(start->value);
    const std::vector<Routine>& all = routines_[number];
    const auto first = std::ranges::lower_bound(all, line, {}, &Routine::line);
    for (auto at = first; at != all.end() && at->line == line; ++at) {
      if (isNamed(at->symbol)) return at->symbol;
    }
    if (first != all.end() && first->line == line) return first->symbol;
  }
  const auto [names, isNew] = byName_.try_emplace(number);
  if (isNew) {
    for (const Routine& routine : routines_[number]) {
      names->second.try_emplace(language::FoldName(index_.Name(routine.symbol)), routine.symbol);
    }
  }
  const auto found = names->second.find(folded);
  return found == names->second.end() ? kNone : found->second;
}

/// Whole routines that conditional compilation leaves out are no symbols.
bool IndexSymbols::IsInactive(Index module, codedb::Line start) const {
  const std::uint32_t line = places_[module].TextLineOfShown(static_cast<std::uint32_t>(start.value));
  const std::vector<language::Routine>& routines = index_.Code(module).routines;
  const auto found = std::ranges::lower_bound(routines, line, {}, &language::Routine::firstLine);
  return line > 0 && found != routines.end() && found->firstLine == line;
}

RoutineGrade IndexSymbols::GradeOf(codedb::ModuleNumber module, std::string_view name,
                                   std::optional<codedb::Line> start) const {
  const SymbolId id = RoutineAt(module, name, start);
  const Index number = ModuleAt(module);
  if (id == kNone && number != kNone && start && start->value > 0 && IsInactive(number, *start)) {
    return {Grade::kInactive, "steht in inaktivem Code", {}};
  }
  if (id == kNone) return {Grade::kPossible, "nach den genauen Regeln keine Routine", {}};
  std::optional<UnusedSymbol> unused = GradeUnused(index_, id);
  if (!unused) return {Grade::kPossible, "nach den genauen Regeln verwendet", {}};
  return {unused->grade, std::move(unused->reason), std::move(unused->place)};
}

}  // namespace quillmate::symbols
