#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include <quillmate/symbols/kinds.h>

/// What leads back to itself.
namespace quillmate::symbols {

struct Arc {
  Index from = 0;
  Index to = 0;
};

/// For each of `nodes` nodes the number of the cycle that it belongs to, kNone for one that no way leads back to. An
/// arc of a node to itself is no cycle. Cycles are numbered in the order of their first nodes. `arcs` by their start.
/// Linear, without recursion.
std::vector<Index> CyclesOf(std::size_t nodes, std::span<const Arc> arcs);

}  // namespace quillmate::symbols
