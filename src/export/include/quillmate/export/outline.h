#pragma once

#include <string>
#include <vector>

namespace quillmate::output {

/// A tree node as the outline sees it: its text and the index of its parent, -1 for a node at the top.
struct OutlineNode {
  std::string text;
  int parent = -1;
};

/// Every top node's text, below it a TAB and the text of each of its children, in index order; CR LF after each line.
/// Deeper nodes are left out. Linear in the number of nodes. Texts pass through as they are.
std::string BuildOutline(const std::vector<OutlineNode>& nodes);

}  // namespace quillmate::output
