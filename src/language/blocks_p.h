#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <quillmate/language/records.h>

/// The open blocks of a routine. Nodes are never changed, so that a state can be kept and taken up again: each branch
/// of an "#If" begins with the blocks that were open before it.
namespace quillmate::language {

class BlockStack {
 public:
  enum class Kind : std::uint8_t { kIf, kSelect, kFor, kDo, kWhile, kWith, kCount };

  /// The top of the stack; kNone when it is empty.
  using State = Index;

  void Clear() noexcept {
    nodes_.clear();
    top_ = kNone;
  }
  State Top() const noexcept { return top_; }
  void Restore(State state) noexcept { top_ = state; }

  /// `withUse`: what members after a leading "." hang on.
  void Push(Kind kind, Index withUse, std::uint32_t extraDepth, bool counted);
  /// Closes the innermost block of the kind with all blocks in it; false when there is none.
  bool Pop(Kind kind) noexcept;

  std::uint32_t Depth() const noexcept { return top_ == kNone ? 0 : nodes_[top_].depth; }
  /// The innermost block of the kind counts in the complexity already.
  bool Counted(Kind kind) const noexcept;
  bool HasWith() const noexcept;
  /// Of the innermost With, kNone without one.
  Index WithUse() const noexcept;

 private:
  struct Node {
    State parent;
    Index withUse;
    std::uint32_t depth;
    std::array<State, static_cast<std::size_t>(Kind::kCount)> innermost;  ///< of each kind, this one included
    bool counted;
  };

  std::vector<Node> nodes_;
  State top_ = kNone;
};

}  // namespace quillmate::language
