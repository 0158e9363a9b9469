#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::StatementKind;

/// What may be where nothing gets to: ends, doubled exits, what whoever looks for errors leaves there.
bool IsHarmless(StatementKind kind) {
  return IsBlockEnd(kind) || IsClauseKind(kind) || kind == StatementKind::kExit || kind == StatementKind::kResume ||
         kind == StatementKind::kStop || kind == StatementKind::kRoutineEnd || kind == StatementKind::kGoTo ||
         kind == StatementKind::kEnd || kind == StatementKind::kReturn || kind == StatementKind::kOther;
}

/// A label that nobody jumps to begins what is dead with it: the label is the finding.
bool BehindLabel(const RoutineView& routine, Index first) {
  const auto& nodes = routine.flow.Nodes();
  for (Index at = first; at > 0 && routine.reached[at] == 0; --at) {
    if (nodes[at].labelled) return true;
  }
  return false;
}

}  // namespace

void CheckReachability(const RoutineView& routine) {
  const auto& nodes = routine.flow.Nodes();
  std::vector<char>& reached = routine.reached;
  reached.assign(nodes.size(), 0);
  routine.flow.Reach(
      0, [](Index) { return false; }, reached);
  bool told = false;
  for (Index at = 0; at < nodes.size(); ++at) {
    const FlowNode& node = nodes[at];
    if (node.kind == StatementKind::kEnd) {
      routine.view.ReportStatement(
          CheckId::kEndStatement, routine.Statement(at),
          "„End“ bricht alles sofort ab: Variablen werden geleert, Terminate-Ereignisse und Aufräumcode entfallen.");
    }
    // Once for what hangs together.
    if (reached[at] != 0) told = false;
    if (reached[at] != 0 || told || IsHarmless(node.kind)) continue;
    told = true;
    if (BehindLabel(routine, at)) continue;
    Index cause = at;
    while (cause > 0 && reached[cause] == 0) --cause;
    const std::uint32_t line = routine.Code().EditorLine(routine.Statement(cause).line);
    const bool end = nodes[cause].kind == StatementKind::kEnd;
    routine.view.ReportStatement(end ? CheckId::kAfterEnd : CheckId::kUnreachable, routine.Statement(at),
                                 "Diese Anweisung wird nie ausgeführt: In Zeile " + std::to_string(line) +
                                     (end ? " beendet „End“ das Programm." : " geht es nicht mehr hierher weiter."));
  }
}

}  // namespace quillmate::checks
