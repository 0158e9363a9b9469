#include <numeric>

#include <quillmate/export/outline.h>
#include <quillmate/text/markers.h>

namespace quillmate::output {
namespace {

constexpr int kTop = -1;

/// The children of every node: those of node i are `nodes[first[i]]` up to before `nodes[first[i + 1]]`, in index
/// order.
struct Children {
  std::vector<std::size_t> first;
  std::vector<std::size_t> nodes;
};

bool HasParent(const OutlineNode& node, std::size_t count) noexcept {
  return node.parent >= 0 && static_cast<std::size_t>(node.parent) < count;
}

Children GroupByParent(const std::vector<OutlineNode>& nodes) {
  Children children{std::vector<std::size_t>(nodes.size() + 1), {}};
  for (const OutlineNode& node : nodes) {
    if (HasParent(node, nodes.size())) ++children.first[static_cast<std::size_t>(node.parent) + 1];
  }
  std::partial_sum(children.first.begin(), children.first.end(), children.first.begin());
  children.nodes.resize(children.first.back());
  std::vector<std::size_t> next = children.first;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (HasParent(nodes[i], nodes.size())) children.nodes[next[static_cast<std::size_t>(nodes[i].parent)]++] = i;
  }
  return children;
}

}  // namespace

std::string BuildOutline(const std::vector<OutlineNode>& nodes) {
  const Children children = GroupByParent(nodes);
  std::string outline;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].parent != kTop) continue;
    outline.append(nodes[i].text).append(text::kLineBreak);
    for (std::size_t k = children.first[i]; k < children.first[i + 1]; ++k) {
      outline.append("\t").append(nodes[children.nodes[k]].text).append(text::kLineBreak);
    }
  }
  return outline;
}

}  // namespace quillmate::output
