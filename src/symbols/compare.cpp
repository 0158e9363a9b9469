#include <array>

#include "compare_p.h"

namespace quillmate::symbols {
namespace {

struct StateWords {
  std::string_view word, german;
};
constexpr std::array<StateWords, kChangeStateCount> kStates{{{"same", "gleich"},
                                                             {"layout", "nur Form"},
                                                             {"changed", "geändert"},
                                                             {"moved", "verschoben"},
                                                             {"renamed", "umbenannt"},
                                                             {"new", "neu"},
                                                             {"gone", "entfallen"}}};
constexpr std::array<StateWords, 7> kFacts{{{"reference", "Verweis"},
                                            {"constant", "Konstante der bedingten Kompilierung"},
                                            {"document", "Dokument"},
                                            {"project", "Projekt"},
                                            {"binding", "Bindung"},
                                            {"control", "Steuerelement"},
                                            {"attribute", "Attribut"}}};

}  // namespace

std::string_view Word(ChangeState state) noexcept { return kStates[static_cast<std::size_t>(state)].word; }
std::string_view GermanWord(ChangeState state) noexcept { return kStates[static_cast<std::size_t>(state)].german; }
std::string_view Word(FactKind kind) noexcept { return kFacts[static_cast<std::size_t>(kind)].word; }
std::string_view GermanWord(FactKind kind) noexcept { return kFacts[static_cast<std::size_t>(kind)].german; }

Comparison Compare(const ComparedState& oldState, const ComparedState& newState, const CompareOptions& options) {
  Comparison result;
  result.options = options;
  ComparisonWork work{oldState, newState, result, {}, {}, {}, {}, {}, {}};
  PairProjects(work);
  PairModules(work);
  PairRoutines(work);
  CompareTexts(work);
  CompareDeclarations(work);
  CompareFacts(work);
  JudgeModules(work);
  CompareUnused(work);
  return result;
}

std::string_view RoutineName(const ReferenceIndex& index, const RoutinePlace& place) {
  const language::Module& code = index.Code(place.module);
  const SymbolId symbol = index.RoutineSymbol(place.module, place.routine);
  if (symbol != kNone) return index.Name(symbol);
  return code.Spelling(code.declarations[code.routines[place.routine].declaration]);
}

SymbolKind RoutineKind(const ReferenceIndex& index, const RoutinePlace& place) {
  using language::DeclarationKind;
  switch (index.Code(place.module).routines[place.routine].kind) {
    case DeclarationKind::kFunction:
      return SymbolKind::kFunction;
    case DeclarationKind::kPropertyGet:
      return SymbolKind::kPropertyGet;
    case DeclarationKind::kPropertyLet:
      return SymbolKind::kPropertyLet;
    case DeclarationKind::kPropertySet:
      return SymbolKind::kPropertySet;
    default:
      return SymbolKind::kSub;
  }
}

std::vector<CallEdge> CallersOf(const ReferenceIndex& index, const RoutinePlace& place) {
  const SymbolId symbol = index.RoutineSymbol(place.module, place.routine);
  return symbol == kNone ? std::vector<CallEdge>() : CallersOf(index, symbol);
}

}  // namespace quillmate::symbols
