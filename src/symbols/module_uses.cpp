#include <algorithm>

#include <quillmate/symbols/cycles.h>
#include <quillmate/symbols/module_uses.h>

#include "index_data_p.h"

namespace quillmate::symbols {
namespace {

/// Calls visit(number among the module's references, module of its target) for every sure use of something elsewhere.
template <typename Visit>
void ForEachUseElsewhere(const ReferenceIndex::Data& data, Index module, Visit visit) {
  const std::vector<StoredReference>& references = data.references[module].references;
  for (Index at = 0; at < references.size(); ++at) {
    const StoredReference& stored = references[at];
    if (stored.target == kNone || (stored.flags & reference_flag::kSet) != 0) continue;
    if (stored.certainty != Certainty::kSure) continue;
    const Index target = data.symbols[stored.target].module;
    if (target != module) visit(at, target);
  }
}

}  // namespace

std::vector<ModuleUse> ModuleUses(const ReferenceIndex& index) {
  const ReferenceIndex::Data& data = index.data();
  std::vector<ModuleUse> uses;
  std::vector<std::uint32_t> counts(data.modules.size(), 0);
  std::vector<Index> used;
  for (Index module = 0; module < data.modules.size(); ++module) {
    used.clear();
    ForEachUseElsewhere(data, module, [&](Index, Index target) {
      if (counts[target]++ == 0) used.push_back(target);
    });
    std::sort(used.begin(), used.end());
    for (const Index target : used) {
      uses.push_back({module, target, counts[target]});
      counts[target] = 0;
    }
  }
  return uses;
}

std::vector<Reference> UsesBetween(const ReferenceIndex& index, Index from, Index to) {
  const ReferenceIndex::Data& data = index.data();
  std::vector<Reference> uses;
  ForEachUseElsewhere(data, from, [&](Index at, Index target) {
    if (target == to)
      uses.push_back(data.At(data.referenceBases[from] + at, data.references[from].references[at].target));
  });
  std::stable_sort(uses.begin(), uses.end(),
                   [](const Reference& a, const Reference& b) { return a.offset < b.offset; });
  return uses;
}

std::vector<Index> ModuleCycles(const ReferenceIndex& index, const std::vector<ModuleUse>& uses) {
  std::vector<Arc> arcs;
  arcs.reserve(uses.size());
  for (const ModuleUse& use : uses) arcs.push_back({use.from, use.to});
  return CyclesOf(index.Modules().size(), arcs);
}

}  // namespace quillmate::symbols
