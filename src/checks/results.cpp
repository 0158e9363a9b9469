#include <algorithm>
#include <string>

#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::DeclarationKind;
using language::StatementKind;

/// Whether the routine's own name, or that of another of its headers, gets a value.
bool SetsResult(const ModuleView& view, Index number) {
  const language::Routine& routine = view.code.routines[number];
  const language::NameId name = view.code.declarations[routine.declaration].name;
  for (Index use = routine.firstUse; use < routine.endUse; ++use) {
    const language::NameUse& found = view.code.uses[use];
    if (found.name != name) continue;
    if (view.bound[use].result && found.role != Role::kValue) return true;
    // Read, handed over by reference, a member of it set: good enough.
    if (view.bound[use].result) return true;
    if (found.role == Role::kLetTarget || found.role == Role::kSetTarget || found.role == Role::kReDim) return true;
  }
  return false;
}

/// Nothing but an error: "not implemented".
bool OnlyRaises(const ModuleView& view, Index number) {
  const language::Routine& routine = view.code.routines[number];
  for (Index use = routine.firstUse; use < routine.endUse; ++use) {
    const Known known = view.KnownName(view.code.uses[use]);
    if (known == Known::kRaise || known == Known::kError) return true;
  }
  return false;
}

}  // namespace

void CheckResults(ModuleView& view) {
  for (Index number = 0; number < view.code.routines.size(); ++number) {
    const language::Routine& routine = view.code.routines[number];
    if (routine.kind != DeclarationKind::kFunction && routine.kind != DeclarationKind::kPropertyGet) continue;
    if (routine.activity != language::Activity::kActive || !routine.hasEnd) continue;
    // Empty ones belong to interfaces.
    if (routine.metrics.statements == 0) continue;
    const language::Declaration& declared = view.code.declarations[routine.declaration];
    // A word of the language as a name ("Property Get Currency") is no use where it gets its value.
    if (declared.name < language::kWordCount) continue;
    if (SetsResult(view, number) || OnlyRaises(view, number)) continue;
    view.ReportDeclaration(CheckId::kMissingResult, declared,
                           "„" + std::string(view.code.Spelling(declared)) +
                               "“ setzt ihr Ergebnis nie und gibt immer den Anfangswert ihres Typs zurück.");
  }
}

}  // namespace quillmate::checks
