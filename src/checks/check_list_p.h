#pragma once

#include <vector>

#include "flow_p.h"
#include "module_view_p.h"

/// The checks: one function for each family. Those of modules run side by side; each reports only what is selected and
/// asks for nothing that another one leaves behind.
namespace quillmate::checks {

void CheckDeclares(ModuleView& view);
void CheckCallbacks(ModuleView& view);
void CheckPointers(ModuleView& view);
void CheckLibraries(ModuleView& view);
void CheckNames(ModuleView& view);
void CheckShadows(ModuleView& view);
void CheckAmbiguity(ModuleView& view);
void CheckUnused(ModuleView& view);
void CheckResults(ModuleView& view);
void CheckSelection(ModuleView& view);
void CheckActiveSheet(ModuleView& view);
void CheckRowNumbers(ModuleView& view);
void CheckMissingSet(ModuleView& view);
void CheckOutsideNames(ModuleView& view);
void CheckOutsideTexts(ModuleView& view);

/// What the code and the document around it no longer have in common.
void CheckLooseEnds(const ReferenceIndex& index, const Selection& selection, std::vector<Finding>& findings);

/// Checks that follow the ways through a routine.
struct RoutineView {
  ModuleView& view;
  Index routine;
  FlowGraph& flow;
  std::vector<char>& reached;  ///< scratch

  const language::Module& Code() const { return view.code; }
  const language::Routine& Routine() const { return view.code.routines[routine]; }
  const language::Statement& Statement(Index node) const { return view.code.statements[flow.Nodes()[node].statement]; }
};

void CheckErrorHandling(const RoutineView& routine);
void CheckReachability(const RoutineView& routine);
void CheckDeadStores(const RoutineView& routine);
void CheckLoops(const RoutineView& routine);
void CheckSelects(const RoutineView& routine);
void CheckSwitches(const RoutineView& routine);

}  // namespace quillmate::checks
