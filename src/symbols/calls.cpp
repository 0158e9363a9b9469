#include <algorithm>
#include <utility>

#include <quillmate/symbols/calls.h>

#include "index_data_p.h"

namespace quillmate::symbols {
namespace {

/// One call before equal ones are joined.
struct Call {
  SymbolId routine;
  Certainty certainty;
  std::uint32_t line;

  bool operator==(const Call&) const = default;
};

bool IsCallOf(Use use) { return use == Use::kCall || use == Use::kAddress || use == Use::kRaise; }

std::vector<CallEdge> Join(std::vector<Call> calls) {
  std::sort(calls.begin(), calls.end(), [](const Call& a, const Call& b) {
    if (a.routine != b.routine) return a.routine < b.routine;
    return std::pair(a.certainty, a.line) < std::pair(b.certainty, b.line);
  });
  calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
  std::vector<CallEdge> edges;
  for (const Call& call : calls) {
    if (edges.empty() || edges.back().routine != call.routine || edges.back().certainty != call.certainty) {
      edges.push_back({call.routine, call.certainty, {}, {}});
    }
    edges.back().lines.push_back(call.line);
  }
  return edges;
}

/// Which implementation an interface's member runs, only the object knows; an event runs every handler.
Certainty ThroughMember(const ReferenceIndex::Data& data, SymbolId member, Certainty certainty) {
  const bool event = data.symbols[member].kind == SymbolKind::kEvent;
  return event || certainty != Certainty::kSure ? certainty : Certainty::kAmbiguous;
}

void AddCallers(const ReferenceIndex::Data& data, SymbolId symbol, bool through, std::vector<Call>& calls) {
  data.ForEachReference(symbol, [&](Index number) {
    const Reference reference = data.At(number, symbol);
    if (!IsCallOf(reference.use) && !(through && reference.use == Use::kRead) &&
        !(through && reference.use == Use::kWrite)) {
      return;
    }
    if (reference.inRoutine == kNone) return;
    const Certainty certainty = through ? ThroughMember(data, symbol, reference.certainty) : reference.certainty;
    calls.push_back({reference.inRoutine, certainty, reference.line});
  });
}

}  // namespace

std::vector<CallEdge> CallersOf(const ReferenceIndex& index, SymbolId routine) {
  const ReferenceIndex::Data& data = index.data();
  std::vector<Call> calls;
  AddCallers(data, routine, false, calls);
  if (const std::optional<SymbolId> member = index.ImplementedBy(routine)) AddCallers(data, *member, true, calls);
  std::vector<CallEdge> edges = Join(std::move(calls));
  for (std::string& place : index.HostPlaces(routine)) {
    edges.push_back({kNone, Certainty::kHost, {}, std::move(place)});
  }
  return edges;
}

std::vector<CallEdge> CalleesOf(const ReferenceIndex& index, SymbolId routine) {
  const ReferenceIndex::Data& data = index.data();
  const Symbol& symbol = data.symbols[routine];
  if (!IsRoutine(symbol.kind)) return {};
  const ModuleReferences& found = data.references[symbol.module];
  const Index first = symbol.routine == 0 ? 0 : found.routineEnds[symbol.routine - 1];
  std::vector<Call> calls;
  for (Index at = first; at < found.routineEnds[symbol.routine]; ++at) {
    const StoredReference& stored = found.references[at];
    if (stored.target == kNone) continue;
    Reference place{};
    data.Place(symbol.module, stored, place);
    if (place.routine != symbol.routine) continue;
    const auto add = [&](SymbolId target) {
      const Use use = data.UseOf(stored, target);
      const SymbolKind kind = data.symbols[target].kind;
      if (use == Use::kImplements || use == Use::kWithEvents) return;
      if (IsCallOf(use) && IsCallable(kind)) calls.push_back({target, stored.certainty, place.line});
      const bool member = IsCallOf(use) || (kind == SymbolKind::kVariable && !data.handledBy.empty());
      if (!member) return;
      for (const SymbolId handler : index.ImplementationsOf(target)) {
        calls.push_back({handler, ThroughMember(data, target, stored.certainty), place.line});
      }
    };
    if ((stored.flags & reference_flag::kSet) == 0) {
      add(stored.target);
    } else {
      for (const SymbolId target : data.sets.Row(stored.target)) add(target);
    }
  }
  return Join(std::move(calls));
}

std::vector<CallNode> CallHierarchy(const ReferenceIndex& index, SymbolId routine, CallDirection direction,
                                    std::uint32_t depth) {
  std::vector<CallNode> nodes;
  std::vector<bool> unfolded(index.SymbolCount(), false), above(index.SymbolCount(), false);
  std::vector<SymbolId> path;
  std::vector<CallNode> open;  // those still to be listed, the next one last
  open.push_back({{routine, Certainty::kSure, {}, {}}, kNone, 0, false, false});
  while (!open.empty()) {
    CallNode node = std::move(open.back());
    open.pop_back();
    const SymbolId symbol = node.edge.routine;
    for (; path.size() > node.depth; path.pop_back()) above[path.back()] = false;
    node.cycle = symbol != kNone && above[symbol];
    const bool leaf = symbol == kNone || node.cycle || node.depth >= depth;
    node.repeated = !leaf && unfolded[symbol] && nodes.size() >= kFullHierarchy;
    const auto number = static_cast<Index>(nodes.size());
    const bool unfold = !leaf && !node.repeated;
    const std::uint32_t below = node.depth + 1;
    nodes.push_back(std::move(node));
    if (!unfold) continue;
    unfolded[symbol] = above[symbol] = true;
    path.push_back(symbol);
    std::vector<CallEdge> edges =
        direction == CallDirection::kCallers ? CallersOf(index, symbol) : CalleesOf(index, symbol);
    for (auto edge = edges.rbegin(); edge != edges.rend(); ++edge) {
      open.push_back({std::move(*edge), number, below, false, false});
    }
  }
  return nodes;
}

}  // namespace quillmate::symbols
