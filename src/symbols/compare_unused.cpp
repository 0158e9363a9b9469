#include <map>
#include <tuple>
#include <utility>

#include "compare_p.h"

/// What became unused by the change, and what is used again.
namespace quillmate::symbols {
namespace {

/// Grades that say that nobody uses it; the others leave it open.
bool IsDead(Grade grade) noexcept {
  return grade == Grade::kCertain || grade == Grade::kSelf || grade == Grade::kInactive || grade == Grade::kWritten;
}

/// What is never told: a new routine has new locals, and those of a changed one are its own business.
bool IsTold(const Symbol& symbol) noexcept {
  return symbol.kind != SymbolKind::kLabel && symbol.kind != SymbolKind::kParameter &&
         !(symbol.kind == SymbolKind::kVariable && symbol.routine != kNone) &&
         !(symbol.kind == SymbolKind::kConstant && symbol.routine != kNone);
}

/// Everything else by module entry, kind and names.
using Key = std::tuple<Index, SymbolKind, std::string, std::string>;
Key KeyOf(const ReferenceIndex& index, SymbolId id, Index entry) {
  const Symbol& symbol = index.SymbolAt(id);
  return {entry, symbol.kind, symbol.parent == kNone ? std::string() : Folded(index.Name(symbol.parent)),
          Folded(index.Name(id))};
}

/// Finds the symbols of one side on the other.
class Partners {
 public:
  Partners(const ReferenceIndex& from, const ReferenceIndex& to, const std::vector<std::vector<RoutinePlace>>& routines,
           const std::vector<Index>& fromEntries, const std::vector<Index>& toEntries)
      : from_(from), to_(to), routines_(routines), fromEntries_(fromEntries), toEntries_(toEntries) {}

  SymbolId Of(SymbolId id) {
    const Symbol& symbol = from_.SymbolAt(id);
    if (IsRoutine(symbol.kind) && symbol.routine != kNone) {
      const RoutinePlace place = routines_[symbol.module][symbol.routine];
      return place.IsKnown() ? to_.RoutineSymbol(place.module, place.routine) : kNone;
    }
    if (byKey_.empty()) Fill();
    const auto found = byKey_.find(KeyOf(from_, id, fromEntries_[symbol.module]));
    return found == byKey_.end() ? kNone : found->second;
  }

 private:
  void Fill() {
    for (SymbolId id = 0; id < to_.SymbolCount(); ++id) {
      const Symbol& symbol = to_.SymbolAt(id);
      if (!IsTold(symbol) || IsModule(symbol.kind) || IsRoutine(symbol.kind) || symbol.kind == SymbolKind::kControl) {
        continue;
      }
      byKey_.try_emplace(KeyOf(to_, id, toEntries_[symbol.module]), id);
    }
  }

  const ReferenceIndex& from_;
  const ReferenceIndex& to_;
  const std::vector<std::vector<RoutinePlace>>& routines_;
  const std::vector<Index>& fromEntries_;
  const std::vector<Index>& toEntries_;
  std::map<Key, SymbolId> byKey_;
};

/// The grade of each symbol that nobody uses.
std::map<SymbolId, UnusedSymbol> DeadOf(const ReferenceIndex& index, const std::vector<Index>& entries) {
  std::map<SymbolId, UnusedSymbol> dead;
  for (UnusedSymbol& unused : FindUnused(index)) {
    const Symbol& symbol = index.SymbolAt(unused.symbol);
    if (!IsDead(unused.grade) || !IsTold(symbol) || entries[symbol.module] == kNone) continue;
    const SymbolId id = unused.symbol;
    dead.emplace_hint(dead.end(), id, std::move(unused));
  }
  return dead;
}

}  // namespace

void CompareUnused(ComparisonWork& work) {
  const ReferenceIndex& oldIndex = work.oldState.index;
  const ReferenceIndex& newIndex = work.newState.index;
  const auto oldDead = DeadOf(oldIndex, work.entryOfOld);
  const auto newDead = DeadOf(newIndex, work.entryOfNew);
  Partners toOld(newIndex, oldIndex, work.partnersOfNew, work.entryOfNew, work.entryOfOld);
  Partners toNew(oldIndex, newIndex, work.partnersOfOld, work.entryOfOld, work.entryOfNew);
  for (const auto& [id, unused] : newDead) {
    const SymbolId before = toOld.Of(id);
    if (before != kNone && oldDead.contains(before)) continue;
    work.result.unused.push_back({true, before, id, unused.grade, unused.reason});
  }
  for (const auto& [id, unused] : oldDead) {
    const SymbolId now = toNew.Of(id);
    if (now != kNone && newDead.contains(now)) continue;
    work.result.unused.push_back({false, id, now, unused.grade, unused.reason});
  }
}

}  // namespace quillmate::symbols
