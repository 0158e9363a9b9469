#include <algorithm>
#include <array>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::NameUse;
using language::StatementKind;

/// What a host leaves as it is when the macro ends.
struct Switch {
  Known name;
  Known off;  ///< the word for off; kNone_: False
  CheckId check;
  std::string_view turned;  ///< "Die Ereignisse (EnableEvents) werden"
  std::string_view state;   ///< "sind ... aus"
};
constexpr std::array kSwitches{
    Switch{Known::kEnableEvents, Known::kNone_, CheckId::kSwitchOff, "Die Ereignisse (EnableEvents) werden", "sind"},
    Switch{Known::kCalculation, Known::kxlCalculationManual, CheckId::kSwitchOff, "Die Berechnung (Calculation) wird",
           "ist"},
    Switch{Known::kScreenUpdating, Known::kNone_, CheckId::kScreenOff, "Die Anzeige (ScreenUpdating) wird", "ist"},
};
constexpr Switch kWarnings{Known::kSetWarnings, Known::kNone_, CheckId::kSwitchOff,
                           "Die Warnungen (SetWarnings) werden", "sind"};

/// The tokens after "=" or after the name are one word.
bool IsWord(const RoutineView& routine, const FlowNode& node, language::NameId word, Known known) {
  const auto tokens = routine.view.Tokens(routine.Code().statements[node.statement]);
  if (tokens.empty() || tokens.back().kind != language::TokenKind::kName) return false;
  const language::Token& last = tokens.back();
  return known == Known::kNone_ ? last.name == word : routine.view.KnownName(last.name) == known;
}

enum class Turn { kNone, kOff, kOn };

/// What a statement does to one of the switches; SetWarnings is called.
Turn TurnOf(const RoutineView& routine, const FlowNode& node, const Switch& wanted) {
  if (node.kind != StatementKind::kAssign) return Turn::kNone;
  for (Index use = node.firstUse; use < node.endUse; ++use) {
    const NameUse& name = routine.Code().uses[use];
    if (name.role != Role::kLetTarget) continue;
    if (routine.view.KnownName(name) != wanted.name || routine.view.bound[use].target != kNone) return Turn::kNone;
    if (name.access != Access::kMember && name.access != Access::kWith) return Turn::kNone;
    return IsWord(routine, node, language::kWordFalse, wanted.off) ? Turn::kOff : Turn::kOn;
  }
  return Turn::kNone;
}

Turn WarningsTurn(const RoutineView& routine, const FlowNode& node) {
  if (node.kind != StatementKind::kCall) return Turn::kNone;
  for (Index use = node.firstUse; use < node.endUse; ++use) {
    if (routine.view.LibraryName(use) != Known::kSetWarnings) continue;
    const auto tokens = routine.view.Tokens(routine.Code().statements[node.statement]);
    const bool zero = !tokens.empty() && tokens.back().kind == language::TokenKind::kInteger;
    return zero || IsWord(routine, node, language::kWordFalse, Known::kNone_) ? Turn::kOff : Turn::kOn;
  }
  return Turn::kNone;
}

/// A call of the project's own code may turn it on again.
bool CallsOwnCode(const RoutineView& routine, const FlowNode& node) {
  for (Index use = node.firstUse; use < node.endUse; ++use) {
    const BoundUse& bound = routine.view.bound[use];
    if (bound.use != symbols::Use::kCall) continue;
    if (bound.target == kNone && bound.certainty != Certainty::kSure) return true;
    if (bound.target != kNone && IsRoutine(routine.view.index.SymbolAt(bound.target).kind)) return true;
  }
  return false;
}

/// The handler that is set where a node runs: the last On Error GoTo before it.
Index HandlerAt(const RoutineView& routine, Index node) {
  const auto& nodes = routine.flow.Nodes();
  for (Index at = node; at-- > 0;) {
    if (nodes[at].kind != StatementKind::kOnError) continue;
    for (Index use = nodes[at].firstUse; use < nodes[at].endUse; ++use) {
      if (routine.Code().uses[use].role == Role::kLabel) return routine.flow.Target(routine.Code(), use);
    }
    return kNone;
  }
  return kNone;
}

bool IsExit(const RoutineView& routine, Index node) {
  const FlowNode& found = routine.flow.Nodes()[node];
  if (found.kind == StatementKind::kRoutineEnd) return true;
  return found.kind == StatementKind::kExit && found.next == kNone;
}

/// An exit that is reached with the switch off, kNone if there is none.
template <typename TurnOn>
Index ExitFrom(const RoutineView& routine, Index start, TurnOn turnsOn) {
  if (start == kNone || turnsOn(start)) return kNone;
  routine.reached.assign(routine.flow.Nodes().size(), 0);
  routine.flow.Reach(start, turnsOn, routine.reached);
  for (Index at = 0; at < routine.reached.size(); ++at) {
    if (routine.reached[at] != 0 && IsExit(routine, at) && !turnsOn(at)) return at;
  }
  return kNone;
}

template <typename TurnOf>
void CheckSwitch(const RoutineView& routine, const Switch& wanted, TurnOf turnOf) {
  const auto& nodes = routine.flow.Nodes();
  Index off = kNone;
  for (Index at = 0; at < nodes.size() && off == kNone; ++at) {
    if (turnOf(nodes[at]) == Turn::kOff) off = at;
  }
  if (off == kNone) return;
  const auto turnsOn = [&](Index node) {
    return turnOf(nodes[node]) == Turn::kOn || CallsOwnCode(routine, nodes[node]);
  };
  Index exit = ExitFrom(routine, nodes[off].next, turnsOn);
  bool error = false;
  if (exit == kNone) {
    exit = ExitFrom(routine, HandlerAt(routine, off), turnsOn);
    error = exit != kNone;
  }
  if (exit == kNone) return;
  const std::uint32_t line = routine.Code().EditorLine(routine.Statement(exit).line);
  std::string where = error ? "nach einem Fehler beim Ausgang in Zeile " : "beim Ausgang in Zeile ";
  routine.view.ReportStatement(wanted.check, routine.Statement(off),
                               std::string(wanted.turned) + " hier abgeschaltet und " + std::string(wanted.state) +
                                   " " + where + std::to_string(line) + " noch aus.");
}

/// Pairs of routines that turn off and on: "SchnellEin", "OptimizeVBA(True)". The other one is elsewhere.
bool IsSwitchRoutine(const RoutineView& routine) {
  std::size_t others = 0;
  for (const FlowNode& node : routine.flow.Nodes()) {
    if (node.kind == StatementKind::kWith || IsBlockEnd(node.kind) || node.kind == StatementKind::kRoutineEnd) continue;
    bool known = WarningsTurn(routine, node) != Turn::kNone;
    for (const Switch& one : kSwitches) known = known || TurnOf(routine, node, one) != Turn::kNone;
    others += !known;
  }
  return others <= 3;
}

}  // namespace

void CheckSwitches(const RoutineView& routine) {
  bool any = false;
  for (Index use = routine.Routine().firstUse; use < routine.Routine().endUse && !any; ++use) {
    const Known known = routine.view.KnownName(routine.Code().uses[use]);
    any = known == Known::kSetWarnings || std::ranges::find(kSwitches, known, &Switch::name) != kSwitches.end();
  }
  if (!any || IsSwitchRoutine(routine)) return;
  for (const Switch& one : kSwitches) {
    CheckSwitch(routine, one, [&](const FlowNode& node) { return TurnOf(routine, node, one); });
  }
  CheckSwitch(routine, kWarnings, [&](const FlowNode& node) { return WarningsTurn(routine, node); });
}

}  // namespace quillmate::checks
