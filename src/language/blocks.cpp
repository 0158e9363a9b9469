#include "blocks_p.h"

namespace quillmate::language {

void BlockStack::Push(Kind kind, Index withUse, std::uint32_t extraDepth, bool counted) {
  Node node;
  node.parent = top_;
  node.withUse = withUse;
  node.depth = Depth() + extraDepth + 1;
  node.counted = counted;
  if (top_ == kNone) {
    node.innermost.fill(kNone);
  } else {
    node.innermost = nodes_[top_].innermost;
  }
  node.innermost[static_cast<std::size_t>(kind)] = static_cast<State>(nodes_.size());
  top_ = static_cast<State>(nodes_.size());
  nodes_.push_back(node);
}

bool BlockStack::Pop(Kind kind) noexcept {
  if (top_ == kNone) return false;
  const State innermost = nodes_[top_].innermost[static_cast<std::size_t>(kind)];
  if (innermost == kNone) return false;
  top_ = nodes_[innermost].parent;
  return true;
}

bool BlockStack::Counted(Kind kind) const noexcept {
  if (top_ == kNone) return false;
  const State innermost = nodes_[top_].innermost[static_cast<std::size_t>(kind)];
  return innermost != kNone && nodes_[innermost].counted;
}

bool BlockStack::HasWith() const noexcept {
  return top_ != kNone && nodes_[top_].innermost[static_cast<std::size_t>(Kind::kWith)] != kNone;
}

Index BlockStack::WithUse() const noexcept {
  return HasWith() ? nodes_[nodes_[top_].innermost[static_cast<std::size_t>(Kind::kWith)]].withUse : kNone;
}

}  // namespace quillmate::language
