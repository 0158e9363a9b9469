#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::NameUse;
using language::StatementKind;

/// Nested deeper than this nothing is looked at: each level costs a look at the whole loop.
constexpr std::uint16_t kDeepest = 40;

/// The loop variable of a For, as a use; kNone when it is no simple variable.
Index LoopVariable(const RoutineView& routine, const FlowNode& node) {
  if (node.firstUse == node.endUse) return kNone;
  const NameUse& name = routine.Code().uses[node.firstUse];
  const bool simple = name.role == Role::kForVariable && name.access == Access::kSimple;
  const Symbol* const symbol = simple ? routine.view.SureSymbol(node.firstUse) : nullptr;
  return symbol != nullptr && (symbol->kind == SymbolKind::kVariable || symbol->kind == SymbolKind::kParameter)
             ? node.firstUse
             : kNone;
}

bool Writes(const NameUse& use) {
  return use.role == Role::kLetTarget || use.role == Role::kForVariable || use.role == Role::kInputTarget;
}

/// Whether the loop is left right after a statement: then the change does no harm.
bool LeavesLoop(const RoutineView& routine, Index node, Index loop) {
  const auto& nodes = routine.flow.Nodes();
  for (Index at = node + 1; at < nodes.size() && at <= nodes[loop].end; ++at) {
    if (nodes[at].kind == StatementKind::kExit || nodes[at].kind == StatementKind::kGoTo ||
        nodes[at].kind == StatementKind::kEnd) {
      return true;
    }
    if (nodes[at].kind != StatementKind::kAssign && nodes[at].kind != StatementKind::kCall) return false;
  }
  return false;
}

void CheckLoopVariable(const RoutineView& routine, Index loop) {
  const auto& nodes = routine.flow.Nodes();
  const Index variable = LoopVariable(routine, nodes[loop]);
  if (variable == kNone || nodes[loop].end == kNone || routine.Statement(loop).depth > kDeepest) return;
  const SymbolId symbol = routine.view.bound[variable].target;
  for (Index at = loop + 1; at < nodes[loop].end; ++at) {
    for (Index use = nodes[at].firstUse; use < nodes[at].endUse; ++use) {
      const NameUse& name = routine.Code().uses[use];
      if (routine.view.bound[use].target != symbol || !Writes(name) || name.access != Access::kSimple) continue;
      if ((name.flags & use_flag::kQualifier) != 0 || LeavesLoop(routine, at, loop)) continue;
      const std::uint32_t line = routine.Code().EditorLine(routine.Statement(loop).line);
      routine.view.ReportUse(CheckId::kLoopVariable, use,
                             "Die Zählvariable " + routine.view.Named(name) + " der Schleife in Zeile " +
                                 std::to_string(line) + " wird in der Schleife geändert.");
      return;
    }
  }
}

/// A jump from outside a loop into it.
void CheckJump(const RoutineView& routine, Index from) {
  const auto& nodes = routine.flow.Nodes();
  for (Index use = nodes[from].firstUse; use < nodes[from].endUse; ++use) {
    if (routine.Code().uses[use].role != Role::kLabel) continue;
    const Index target = routine.flow.Target(routine.Code(), use);
    if (target == kNone || routine.Statement(target).depth > kDeepest) continue;
    const Index innermost = nodes[target].begin != kNone ? nodes[target].begin : nodes[target].block;
    for (Index block = innermost; block != kNone; block = nodes[block].block) {
      const bool counts = nodes[block].kind == StatementKind::kFor || nodes[block].kind == StatementKind::kForEach ||
                          nodes[block].kind == StatementKind::kWith;
      const bool inside = from > block && from < nodes[block].end;
      // The label right before the loop's Next is inside of it; the loop's own line is not.
      if (!counts || inside || target <= block) continue;
      const bool with = nodes[block].kind == StatementKind::kWith;
      const std::uint32_t line = routine.Code().EditorLine(routine.Statement(block).line);
      routine.view.ReportStatement(CheckId::kGoToIntoLoop, routine.Statement(from),
                                   "Der Sprung zu " + routine.view.Named(routine.Code().uses[use]) +
                                       " führt mitten in " + (with ? "den With-Block" : "die Schleife") +
                                       " aus Zeile " + std::to_string(line) + (with ? ", dessen" : ", deren") +
                                       " Anfang dann nicht ausgeführt ist.");
      return;
    }
  }
}

}  // namespace

void CheckLoops(const RoutineView& routine) {
  const auto& nodes = routine.flow.Nodes();
  const bool variables = routine.view.selection->Has(CheckId::kLoopVariable);
  const bool jumps = routine.view.selection->Has(CheckId::kGoToIntoLoop);
  for (Index at = 0; at < nodes.size(); ++at) {
    if (variables && nodes[at].kind == StatementKind::kFor) CheckLoopVariable(routine, at);
    if (jumps && nodes[at].kind == StatementKind::kGoTo) CheckJump(routine, at);
  }
}

void CheckSelects(const RoutineView& routine) {
  const auto& nodes = routine.flow.Nodes();
  std::vector<char> hasElse(nodes.size(), 0);
  for (const FlowNode& node : nodes) {
    if (node.kind == StatementKind::kCaseElse && node.block != kNone) hasElse[node.block] = 1;
  }
  for (Index at = 0; at < nodes.size(); ++at) {
    if (nodes[at].kind != StatementKind::kSelect || hasElse[at] != 0) continue;
    routine.view.ReportStatement(
        CheckId::kMissingCaseElse, routine.Statement(at),
        "Das Select Case hat kein Case Else: Ein Wert, an den niemand dachte, fällt nicht auf.");
  }
}

}  // namespace quillmate::checks
