#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::BuiltinType;
using language::Declaration;
using language::NameUse;
using language::StatementKind;

/// So many at a time; older ones are given up.
constexpr std::size_t kPending = 32;

/// A value that waits to be read.
struct Pending {
  SymbolId variable;
  Index use;
};

/// A simple variable of the routine, neither static nor an array nor an object.
bool IsPlainLocal(const RoutineView& routine, const Symbol& symbol) {
  if (symbol.kind != SymbolKind::kVariable || symbol.module != routine.view.module) return false;
  if (symbol.routine != routine.routine || symbol.visibility != language::Visibility::kLocal) return false;
  const Declaration* const declared = routine.view.DeclarationOf(symbol);
  if (declared == nullptr) return false;
  constexpr std::uint32_t kNot = declaration_flag::kArray | declaration_flag::kStatic | declaration_flag::kAsNew;
  return (declared->flags & kNot) == 0 && declared->type != BuiltinType::kNamed &&
         declared->type != BuiltinType::kObject &&
         (routine.view.code.declarations[routine.Routine().declaration].flags & declaration_flag::kStatic) == 0;
}

/// The variable that an assignment writes as a whole, and where; kNone otherwise.
Index WholeTarget(const RoutineView& routine, const FlowNode& node) {
  if (node.kind != StatementKind::kAssign || node.firstUse == node.endUse) return kNone;
  const NameUse& target = routine.Code().uses[node.firstUse];
  if (target.role != Role::kLetTarget || target.access != Access::kSimple) return kNone;
  if ((target.flags & (use_flag::kReadToo | use_flag::kParenthesised | use_flag::kQualifier)) != 0) return kNone;
  const Symbol* const symbol = routine.view.SureSymbol(node.firstUse);
  return symbol != nullptr && IsPlainLocal(routine, *symbol) ? node.firstUse : kNone;
}

/// A plain statement: the next one follows it and nothing else gets between them.
bool IsStraight(StatementKind kind) {
  return kind == StatementKind::kAssign || kind == StatementKind::kCall || kind == StatementKind::kErase ||
         kind == StatementKind::kFile || kind == StatementKind::kReDim || kind == StatementKind::kRaiseEvent;
}

/// Values may be needed after an error: then the order of the lines says nothing.
bool MayContinueAfterErrors(const RoutineView& routine) {
  return routine.flow.HasGoSub() || std::ranges::any_of(routine.flow.Nodes(), [](const FlowNode& node) {
           return node.kind == StatementKind::kOnError;
         });
}

}  // namespace

void CheckDeadStores(const RoutineView& routine) {
  if (MayContinueAfterErrors(routine)) return;
  const auto& nodes = routine.flow.Nodes();
  std::vector<Pending> pending;
  for (const FlowNode& node : nodes) {
    if (node.labelled || !IsStraight(node.kind)) {
      pending.clear();
      continue;
    }
    const Index target = WholeTarget(routine, node);
    for (Index use = node.firstUse; use < node.endUse; ++use) {
      if (use == target || pending.empty()) continue;
      const BoundUse& bound = routine.view.bound[use];
      std::erase_if(pending, [&](const Pending& p) { return p.variable == bound.target; });
    }
    if (target == kNone) continue;
    const SymbolId variable = routine.view.bound[target].target;
    const auto earlier = std::ranges::find(pending, variable, &Pending::variable);
    if (earlier == pending.end()) {
      if (pending.size() == kPending) pending.erase(pending.begin());
      pending.push_back({variable, target});
      continue;
    }
    const NameUse& name = routine.Code().uses[earlier->use];
    const std::uint32_t line = routine.Code().EditorLine(routine.Code().uses[target].line);
    routine.view.ReportUse(CheckId::kUnreadAssignment, earlier->use,
                           "Der Wert, den " + routine.view.Named(name) + " hier bekommt, wird nie gelesen: Zeile " +
                               std::to_string(line) + " überschreibt ihn.");
    earlier->use = target;
  }
}

}  // namespace quillmate::checks
