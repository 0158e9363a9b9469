#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include <quillmate/language/module.h>

/// The ways through one routine: which statement runs after which. Active statements only; no names are looked up.
namespace quillmate::checks {

using language::Index;
using language::kNone;
using language::StatementKind;

/// ElseIf, Else, Case, Case Else.
bool IsClauseKind(StatementKind kind) noexcept;
/// End If, Next, Loop ...
bool IsBlockEnd(StatementKind kind) noexcept;
bool IsLoop(StatementKind kind) noexcept;

struct FlowNode {
  Index statement;  ///< into Module::statements
  Index firstUse, endUse;
  StatementKind kind;
  Index next = kNone;     ///< runs after it
  Index other = kNone;    ///< likewise: when a condition is false, a loop is over
  Index block = kNone;    ///< the innermost block around it: the node that opens it
  Index end = kNone;      ///< what opens a block: the node that closes it
  Index begin = kNone;    ///< what closes a block: the node that opens it, of several the innermost
  bool labelled = false;  ///< a label is before it
};

/// Taken up for one routine after the other; keeps its memory.
class FlowGraph {
 public:
  /// `cursor`: a statement at or before the routine's first one; moves after its last one. False when the routine has
  /// no body or its blocks don't match: then nothing can be said of its ways.
  bool Build(const language::Module& code, Index routine, Index& cursor);

  const std::vector<FlowNode>& Nodes() const noexcept { return nodes_; }
  /// Jumps besides `next` and `other`, sorted: On Error GoTo (to the label), On x GoTo, GoSub, Select Case.
  const std::vector<std::pair<Index, Index>>& Jumps() const noexcept { return jumps_; }
  bool HasGoSub() const noexcept { return goSub_; }
  /// The node after a label that a use of role kLabel names; kNone when there is none.
  Index Target(const language::Module& code, Index labelUse) const;
  /// Marks what can be reached from `from`, `from` included, without passing on after a node where `stops` is true.
  template <typename Stops>
  void Reach(Index from, Stops stops, std::vector<char>& reached);

 private:
  void Collect(const language::Module& code, Index routine, Index& cursor);
  void CollectLabels(const language::Module& code, Index routine);
  void Close(Index end);
  void CloseLine(const language::Module& code, Index at);
  bool CloseBlocks(const language::Module& code, Index at);
  bool TakeClause(Index at);
  bool MatchBlocks(const language::Module& code);
  void Link(const language::Module& code);
  void LinkLabels(const language::Module& code, Index node);
  Index Past(Index node) const;
  Index Following(Index node) const;
  Index Otherwise(Index node) const;
  Index LoopExit(Index loop) const;
  bool IsClause(Index node) const { return IsClauseKind(nodes_[node].kind); }

  struct Open {
    Index node;
    Index lastClause;
    std::uint32_t lineEnd;  ///< one-line If: the line after it, else 0
  };
  struct Label {
    language::NameId name;
    Index node;
  };

  std::vector<FlowNode> nodes_;
  std::vector<Open> open_;
  std::vector<Index> nextClause_;  ///< by node: the next ElseIf, Else, Case of the block, its end after the last one;
                                   ///< of a loop that ends together with the one around it: that one
  std::vector<std::pair<Index, Index>> jumps_;
  std::vector<Label> labels_;  ///< by name
  std::vector<Index> stack_;
  bool goSub_ = false;
};

template <typename Stops>
void FlowGraph::Reach(Index from, Stops stops, std::vector<char>& reached) {
  if (from == kNone || reached[from] != 0) return;
  stack_.clear();
  stack_.push_back(from);
  reached[from] = 1;
  const auto visit = [&](Index node) {
    if (node == kNone || reached[node] != 0) return;
    reached[node] = 1;
    stack_.push_back(node);
  };
  while (!stack_.empty()) {
    const Index node = stack_.back();
    stack_.pop_back();
    if (stops(node)) continue;
    visit(nodes_[node].next);
    visit(nodes_[node].other);
    auto jump = std::lower_bound(jumps_.begin(), jumps_.end(), std::pair<Index, Index>(node, 0));
    for (; jump != jumps_.end() && jump->first == node; ++jump) visit(jump->second);
  }
}

}  // namespace quillmate::checks
