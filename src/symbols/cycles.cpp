#include <algorithm>

#include <quillmate/symbols/cycles.h>

namespace quillmate::symbols {
namespace {

/// Strongly connected parts, by the order in which a depth-first walk leaves them.
class PartFinder {
 public:
  PartFinder(std::size_t nodes, std::span<const Arc> arcs)
      : first_(nodes + 1, 0), arcs_(arcs), number_(nodes, kNone), lowest_(nodes, 0), part_(nodes, kNone) {
    for (const Arc& arc : arcs_) ++first_[arc.from + 1];
    for (std::size_t i = 0; i < nodes; ++i) first_[i + 1] += first_[i];
  }

  std::vector<Index> Run() {
    for (Index node = 0; node < number_.size(); ++node) {
      if (number_[node] == kNone) Walk(node);
    }
    return part_;
  }

 private:
  struct Step {
    Index node;
    Index arc;
  };

  void Enter(Index node) {
    number_[node] = lowest_[node] = next_++;
    open_.push_back(node);
    path_.push_back({node, first_[node]});
  }

  void Walk(Index start) {
    Enter(start);
    while (!path_.empty()) {
      Step& step = path_.back();
      if (step.arc == first_[step.node + 1]) {
        Leave();
        continue;
      }
      const Index target = arcs_[step.arc++].to;
      if (number_[target] == kNone) {
        Enter(target);
      } else if (part_[target] == kNone) {
        lowest_[step.node] = std::min(lowest_[step.node], number_[target]);
      }
    }
  }

  void Leave() {
    const Index node = path_.back().node;
    path_.pop_back();
    if (!path_.empty()) {
      Index& above = lowest_[path_.back().node];
      above = std::min(above, lowest_[node]);
    }
    if (lowest_[node] != number_[node]) return;
    for (Index member = kNone; member != node;) {
      member = open_.back();
      open_.pop_back();
      part_[member] = parts_;
    }
    ++parts_;
  }

  std::vector<Index> first_;
  std::span<const Arc> arcs_;
  std::vector<Index> number_, lowest_, part_, open_;
  std::vector<Step> path_;
  Index next_ = 0, parts_ = 0;
};

}  // namespace

std::vector<Index> CyclesOf(std::size_t nodes, std::span<const Arc> arcs) {
  std::vector<Index> parts = PartFinder(nodes, arcs).Run();
  std::vector<Index> sizes(nodes, 0), numbers(nodes, kNone);
  for (const Index part : parts) ++sizes[part];
  Index cycles = 0;
  for (Index& part : parts) {
    if (sizes[part] < 2) {
      part = kNone;
      continue;
    }
    if (numbers[part] == kNone) numbers[part] = cycles++;
    part = numbers[part];
  }
  return parts;
}

}  // namespace quillmate::symbols
