#include <algorithm>

#include <quillmate/language/parse.h>

#include "binder_p.h"

/// What a routine declares, from its begin to its end.
namespace quillmate::symbols {

using language::Declaration;
using language::DeclarationKind;
namespace declaration_flag = language::declaration_flag;

void Binder::EnterLocal(Index declaration) {
  const Declaration& declared = code_.declarations[declaration];
  const bool label = declared.kind == DeclarationKind::kLabel;
  std::vector<std::uint32_t>& stamps = label ? scratch_.labelStamps : scratch_.localStamps;
  std::vector<Index>& numbers = label ? scratch_.labels : scratch_.locals;
  if (stamps[declared.name] == stamp_) {
    // Two of one name: the active one counts, else the first.
    const bool inactive = (code_.declarations[numbers[declared.name]].flags & declaration_flag::kInactive) != 0;
    if (!inactive || (declared.flags & declaration_flag::kInactive) != 0) return;
  }
  stamps[declared.name] = stamp_;
  numbers[declared.name] = declaration;
}

void Binder::EnterRoutine(Index number) {
  routine_ = number;
  nextRoutine_ = number + 1;
  ++stamp_;
  pendings_.clear();
  const language::Routine& routine = code_.routines[number];
  for (Index at = routine.firstDeclaration; at < routine.endDeclaration; ++at) {
    const Declaration& declared = code_.declarations[at];
    const bool known = (table_.status[at] & status::kNone) == 0;
    switch (declared.kind) {
      case DeclarationKind::kParameter:
        if (declared.parent == routine.declaration) EnterLocal(at);
        break;
      case DeclarationKind::kVariable:
      case DeclarationKind::kConstant:
      case DeclarationKind::kLabel:
        if (known) EnterLocal(at);
        break;
      default:
        break;
    }
  }
  // The names of the routine's module are asked from inside it: by now its locals are known.
  routineFirst_ = result_.references.size();
  EnterReDims(routine);
  BindHeader(number);
}

void Binder::EnterReDims(const language::Routine& routine) {
  for (Index at = routine.firstDeclaration; at < routine.endDeclaration; ++at) {
    const Declaration& declared = code_.declarations[at];
    if (declared.kind != DeclarationKind::kReDim || (declared.flags & declaration_flag::kInactive) != 0) continue;
    if (scratch_.localStamps[declared.name] == stamp_) continue;
    const Declaration& header = code_.declarations[routine.declaration];
    if (IsFunction(header.kind) && header.name == declared.name) continue;
    const Meaning& meaning = ValueOf(declared.name);
    if (meaning.kind == MeaningKind::kSeveral) continue;
    if (meaning.kind == MeaningKind::kGroup) {
      const SymbolKind kind = KindOf(tables_.modules[meaning.module], meaning.local);
      if (kind == SymbolKind::kVariable || IsProperty(kind)) continue;
    }
    result_.redims.push_back(at);
    EnterLocal(at);
  }
}

void Binder::LeaveRoutine() {
  if (routine_ == kNone) return;
  for (; nextString_ < code_.strings.size(); ++nextString_) {
    const Index routine = code_.strings[nextString_].routine;
    if (routine != kNone && routine > routine_) break;
    BindString(nextString_);
  }
  if (!pendings_.empty()) SettlePendings();
  result_.routineEnds.push_back(static_cast<Index>(result_.references.size()));
  routine_ = kNone;
}

/// Decides which unknown names of the routine are variables that their first use declares.
void Binder::SettlePendings() {
  for (Pending& pending : pendings_) {
    if (pending.use == kNone) continue;
    if (!pending.written && (pending.doubtful || pending.constant || !pending.value)) continue;
    pending.implicit = static_cast<Index>(result_.implicits.size());
    result_.implicits.push_back({pending.use, routine_, pending.form});
  }
  const auto settled = [&](StoredReference& reference) {
    if ((reference.flags & reference_flag::kPending) == 0) return true;
    const Pending& pending = pendings_[reference.target];
    if (pending.implicit == kNone || pending.use == reference.place) return false;
    reference.target = pending.implicit;
    reference.flags =
        static_cast<std::uint16_t>((reference.flags & ~reference_flag::kPending) | reference_flag::kUndeclared);
    return true;
  };
  const auto first = result_.references.begin() + static_cast<std::ptrdiff_t>(routineFirst_);
  result_.references.erase(
      std::remove_if(first, result_.references.end(), [&](StoredReference& r) { return !settled(r); }),
      result_.references.end());
}

}  // namespace quillmate::symbols
