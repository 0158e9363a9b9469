#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Who calls whom. A call is a call of a routine, Declare or property, AddressOf, a name in a string, RaiseEvent (it
/// calls every handler) and the use of an interface's member (it may call every implementation).
namespace quillmate::symbols {

/// One routine that another calls or is called by.
struct CallEdge {
  SymbolId routine = kNone;  ///< kNone: something outside the code, told by `host`
  Certainty certainty = Certainty::kSure;
  std::vector<std::uint32_t> lines;  ///< the calling lines, ascending, each once; lines of the caller's module
  std::string host;                  ///< German words
};

/// Sorted by symbol, then certainty; one edge for each pair. Routines outside of the code come last.
std::vector<CallEdge> CallersOf(const ReferenceIndex& index, SymbolId routine);
std::vector<CallEdge> CalleesOf(const ReferenceIndex& index, SymbolId routine);

/// A routine in a call hierarchy. Nodes come before their children.
struct CallNode {
  CallEdge edge;            ///< how it hangs on its parent; the root: itself, without lines
  Index parent = kNone;     ///< into the hierarchy
  std::uint32_t depth = 0;  ///< the root has 0
  bool cycle = false;       ///< is above itself already: nothing below
  bool repeated = false;    ///< unfolded elsewhere in the hierarchy: nothing below
};

enum class CallDirection : std::uint8_t { kCallers, kCallees };

inline constexpr std::size_t kFullHierarchy = 10'000;

/// The hierarchy below a routine, depth first, to `depth` levels. After the first kFullHierarchy nodes each routine is
/// unfolded once, and marked where it comes again, so that the size stays bounded by the number of edges.
std::vector<CallNode> CallHierarchy(const ReferenceIndex& index, SymbolId routine, CallDirection direction,
                                    std::uint32_t depth);

}  // namespace quillmate::symbols
