#pragma once

#include <cstdint>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Which module uses which others, and how often.
namespace quillmate::symbols {

/// Module `from` names what module `to` declares, or the module itself, so many times. Only sure uses count.
struct ModuleUse {
  Index from = 0;
  Index to = 0;
  std::uint32_t count = 0;
};

/// Sorted by `from`, then `to`; none of a module of itself. Linear in the number of uses.
std::vector<ModuleUse> ModuleUses(const ReferenceIndex& index);

/// The uses that make up one ModuleUse, by place.
std::vector<Reference> UsesBetween(const ReferenceIndex& index, Index from, Index to);

/// For each module the number of the cycle that it belongs to, kNone where it uses nobody that uses it.
std::vector<Index> ModuleCycles(const ReferenceIndex& index, const std::vector<ModuleUse>& uses);

}  // namespace quillmate::symbols
