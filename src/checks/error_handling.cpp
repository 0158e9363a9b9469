#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::NameUse;
using language::StatementKind;

/// So many statements may run without a word before anybody is told.
constexpr std::size_t kSilent = 8;

/// So many handlers of one routine are looked at.
constexpr std::size_t kHandlers = 16;

enum class Handling { kResumeNext, kLabel, kOff };

Handling HandlingOf(const RoutineView& routine, const FlowNode& node) {
  for (Index use = node.firstUse; use < node.endUse; ++use) {
    if (routine.Code().uses[use].role == Role::kLabel) return Handling::kLabel;
  }
  for (const language::Token& token : routine.view.Tokens(routine.Code().statements[node.statement])) {
    if (token.name == language::kWordResume) return Handling::kResumeNext;
  }
  return Handling::kOff;
}

bool NamesError(const RoutineView& routine, const FlowNode& node) {
  for (Index use = node.firstUse; use < node.endUse; ++use) {
    const NameUse& name = routine.Code().uses[use];
    if (name.access != Access::kSimple) continue;
    const Known known = routine.view.LibraryName(use);
    if (known == Known::kErr || known == Known::kError || known == Known::kErl) return true;
  }
  return false;
}

/// On Error Resume Next that stays on to the routine's end, while much runs and nobody asks for errors.
void CheckResumeNext(const RoutineView& routine) {
  const auto& nodes = routine.flow.Nodes();
  Index resume = kNone;
  std::size_t silent = 0;
  for (Index at = 0; at < nodes.size(); ++at) {
    const FlowNode& node = nodes[at];
    if (node.kind == StatementKind::kOnError) {
      const bool on = HandlingOf(routine, node) == Handling::kResumeNext;
      resume = on ? (resume == kNone ? at : resume) : kNone;
      silent = 0;
      continue;
    }
    if (resume == kNone) continue;
    if (NamesError(routine, node)) return;
    silent += !IsBlockEnd(node.kind) && !IsClauseKind(node.kind) && node.kind != StatementKind::kRoutineEnd;
  }
  if (resume == kNone || silent < kSilent) return;
  routine.view.ReportStatement(
      CheckId::kResumeNext, routine.Statement(resume),
      "„On Error Resume Next“ bleibt bis zum Ende der Routine an: " + std::to_string(silent) +
          " Anweisungen laufen weiter, auch wenn eine von ihnen scheitert, und niemand fragt nach dem Fehler.");
}

/// Whether the lines at a label only make sense after an error: they tell it, or go back with Resume.
bool HandlesError(const RoutineView& routine, Index label) {
  const auto& nodes = routine.flow.Nodes();
  for (Index at = label; at < nodes.size(); ++at) {
    const FlowNode& node = nodes[at];
    if (at > label && node.labelled) return false;
    switch (node.kind) {
      case StatementKind::kResume:
        return true;
      case StatementKind::kIf:
      case StatementKind::kInlineIf:
      case StatementKind::kSelect:
      case StatementKind::kExit:
      case StatementKind::kGoTo:
      case StatementKind::kOnError:
      case StatementKind::kRoutineEnd:
        return false;
      default:
        break;
    }
    // Err.Clear and On Error do no harm without an error.
    for (Index use = node.firstUse; use + 1 < node.endUse; ++use) {
      if (routine.view.LibraryName(use) != Known::kErr || routine.Code().uses[use].access != Access::kSimple) continue;
      const Known member = routine.view.KnownName(routine.Code().uses[use + 1]);
      if (member == Known::kDescription || member == Known::kNumber) return node.kind == StatementKind::kCall;
    }
  }
  return false;
}

/// An error handler that the code runs into without any error.
void CheckErrorLabels(const RoutineView& routine) {
  const auto& nodes = routine.flow.Nodes();
  std::vector<char>& reached = routine.reached;
  std::vector<Index> seen;
  for (Index at = 0; at < nodes.size(); ++at) {
    if (nodes[at].kind != StatementKind::kOnError || HandlingOf(routine, nodes[at]) != Handling::kLabel) continue;
    Index target = kNone;
    std::string label;
    for (Index use = nodes[at].firstUse; use < nodes[at].endUse; ++use) {
      if (routine.Code().uses[use].role != Role::kLabel) continue;
      target = routine.flow.Target(routine.Code(), use);
      label = routine.view.Named(routine.Code().uses[use]);
    }
    // The same label is often set again and again.
    if (std::ranges::find(seen, target) != seen.end()) continue;
    if (seen.size() == kHandlers) return;
    seen.push_back(target);
    if (target == kNone || target == 0 || !HandlesError(routine, target)) continue;
    const Index before = target - 1;
    if (nodes[before].next != target || nodes[before].kind == StatementKind::kOnError) continue;
    // Only what runs without an error counts: no jumps.
    reached.assign(nodes.size(), 0);
    routine.flow.Reach(
        0, [&](Index node) { return node == target; }, reached);
    if (reached[before] == 0) continue;
    // Err.Raise and what always raises an error end before the label.
    bool raises = false;
    for (Index use = nodes[before].firstUse; use < nodes[before].endUse; ++use) {
      raises = raises || routine.view.KnownName(routine.Code().uses[use]) == Known::kRaise;
    }
    if (raises || nodes[before].kind == StatementKind::kErrorStatement) continue;
    routine.view.ReportStatement(
        CheckId::kErrorLabel, routine.Statement(target),
        "Vor der Fehlermarke " + label + " fehlt ein Exit: Die Fehlerbehandlung läuft auch ohne Fehler.");
    return;
  }
}

}  // namespace

void CheckErrorHandling(const RoutineView& routine) {
  if (routine.view.selection->Has(CheckId::kResumeNext)) CheckResumeNext(routine);
  if (routine.view.selection->Has(CheckId::kErrorLabel)) CheckErrorLabels(routine);
}

}  // namespace quillmate::checks
