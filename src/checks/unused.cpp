#include <algorithm>
#include <string>

#include <quillmate/symbols/unused.h>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::Visibility;

/// Whether somebody may start it by hand: a public Sub without parameters of a standard module.
bool IsMacro(const ModuleView& view, const Symbol& symbol) {
  if (symbol.kind != SymbolKind::kSub || symbol.visibility == Visibility::kPrivate || view.vb6) return false;
  if (view.Info().kind != language::ModuleKind::kStandard || view.code.facts.optionPrivateModule) return false;
  const language::Declaration& declared = view.code.declarations[symbol.declaration];
  return declared.childCount == 0;
}

struct Row {
  SymbolKind kind;
  CheckId check;
  std::string_view text;  ///< after the name
};
constexpr Row kRows[] = {
    {SymbolKind::kSub, CheckId::kUnusedRoutine, " wird nirgends aufgerufen."},
    {SymbolKind::kFunction, CheckId::kUnusedRoutine, " wird nirgends aufgerufen."},
    {SymbolKind::kPropertyGet, CheckId::kUnusedRoutine, " (Property Get) wird nirgends gelesen."},
    {SymbolKind::kPropertyLet, CheckId::kUnusedRoutine, " (Property Let) wird nirgends gesetzt."},
    {SymbolKind::kPropertySet, CheckId::kUnusedRoutine, " (Property Set) wird nirgends gesetzt."},
    {SymbolKind::kVariable, CheckId::kUnusedVariable, " wird nirgends verwendet."},
    {SymbolKind::kConstant, CheckId::kUnusedConstant, " wird nirgends gelesen."},
    {SymbolKind::kEnumMember, CheckId::kUnusedEnumMember, " wird nirgends gelesen."},
    {SymbolKind::kParameter, CheckId::kUnusedParameter, " wird in der Routine nicht verwendet."},
    {SymbolKind::kType, CheckId::kUnusedType, " wird nirgends verwendet."},
    {SymbolKind::kEnum, CheckId::kUnusedType, " wird nirgends verwendet."},
    {SymbolKind::kDeclare, CheckId::kUnusedDeclare, " wird nirgends aufgerufen."},
    {SymbolKind::kLabel, CheckId::kUnusedLabel, " wird nirgends angesprungen."},
};

const Row* RowOf(SymbolKind kind) {
  const auto* const row = std::ranges::find(kRows, kind, &Row::kind);
  return row == std::end(kRows) ? nullptr : row;
}

/// A stub: nothing in it that could use a parameter.
bool IsEmpty(const ModuleView& view, const Symbol& symbol) {
  return symbol.routine != kNone && view.code.routines[symbol.routine].metrics.statements == 0;
}

void Report(ModuleView& view, SymbolId id, const symbols::UnusedSymbol& unused) {
  using symbols::Grade;
  const Symbol& symbol = view.index.SymbolAt(id);
  const Row* const row = RowOf(symbol.kind);
  if (row == nullptr || symbol.line == 0 || (symbol.flags & symbols::symbol_flag::kInactive) != 0) return;
  const std::string name = InQuotes(view.index.Name(id));
  const auto report = [&](CheckId check, std::string text) {
    view.Report(check, symbol.line, symbol.column, symbol.routine, view.index.Name(id), std::move(text));
  };
  if (unused.grade == Grade::kWritten) {
    // What nothing declares is a finding of its own.
    const bool variable = symbol.kind == SymbolKind::kVariable && (symbol.flags & symbols::symbol_flag::kImplicit) == 0;
    if (variable) report(CheckId::kUnreadVariable, name + " bekommt Werte, die niemand liest.");
    return;
  }
  if (unused.grade == Grade::kSelf && IsRoutine(symbol.kind)) {
    return report(CheckId::kUnusedRoutine, name + " wird nur von sich selbst aufgerufen.");
  }
  if (unused.grade != Grade::kCertain) return;
  if (symbol.kind == SymbolKind::kParameter && IsEmpty(view, symbol)) return;
  if (IsMacro(view, symbol)) {
    return report(CheckId::kUncalledMacro,
                  name + " wird von keinem Code aufgerufen. Prüfen: Starten lässt sich das Makro auch von Hand.");
  }
  // A member of an Enum that nobody uses at all says so once.
  report(row->check, name + std::string(row->text));
}

}  // namespace

void CheckUnused(ModuleView& view) {
  for (const symbols::UnusedSymbol& unused : symbols::FindUnused(view.index, view.module)) {
    Report(view, unused.symbol, unused);
  }
}

}  // namespace quillmate::checks
