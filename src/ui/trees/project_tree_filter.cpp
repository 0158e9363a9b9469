#include "project_tree_filter.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include <quillmate/text/windows1252.h>

namespace quillmate::ui {
namespace {

/// Characters of Windows-1252 without regard to case.
class Folding {
 public:
  Folding() {
    for (unsigned code = 0; code < folded_.size(); ++code) {
      folded_[code] = QChar(text::ToUnicode(static_cast<unsigned char>(code))).toCaseFolded().unicode();
    }
  }

  void Fold(std::string_view code, std::u16string& folded) const {
    folded.clear();
    for (const char c : code) folded += folded_[static_cast<unsigned char>(c)];
  }

 private:
  std::array<char16_t, 256> folded_{};
};

}  // namespace

ProjectTreeFilter::ProjectTreeFilter(ProjectTreeModel& tree) : QSortFilterProxyModel(&tree), tree_(tree) {
  setDynamicSortFilter(false);
  setSourceModel(&tree);
}

void ProjectTreeFilter::SetFilter(const QString& text) {
  const QString before = std::exchange(filter_, text);
  // What the first letters have not found, more of them do not find either.
  const bool narrows = !before.isEmpty() && text.startsWith(before) && ranks_.size() == tree_.Tree().nodes.size();
  if (!narrows) ranks_.assign(tree_.Tree().nodes.size(), Rank::kInside);
  RankNodes();
  invalidate();
}

void ProjectTreeFilter::SetLines(std::vector<codedb::Line> lines) {
  lines_ = std::move(lines);
  sort(lines_.empty() ? -1 : 0);
}

void ProjectTreeFilter::RankNodes() {
  isShown_.clear();
  holdsMatch_.clear();
  if (filter_.isEmpty()) {
    ranks_.clear();
    return;
  }
  static const Folding folding;
  const std::u16string wanted = filter_.toCaseFolded().toStdU16String();
  const std::vector<navigation::TreeNode>& nodes = tree_.Tree().nodes;
  std::u16string name;
  for (std::size_t node = 0; node < nodes.size(); ++node) {
    if (ranks_[node] == Rank::kNone) continue;
    folding.Fold(nodes[node].text, name);
    const std::size_t at = name.find(wanted);
    ranks_[node] = at == std::u16string::npos    ? Rank::kNone
                   : at > 0                      ? Rank::kInside
                   : name.size() > wanted.size() ? Rank::kStart
                                                 : Rank::kWhole;
  }
  // Parents come before their children.
  holdsMatch_.assign(nodes.size(), false);
  isShown_.assign(nodes.size(), false);
  for (std::size_t node = nodes.size(); node-- > 0;) {
    if (nodes[node].parent < 0 || (ranks_[node] == Rank::kNone && !holdsMatch_[node])) continue;
    holdsMatch_[static_cast<std::size_t>(nodes[node].parent)] = true;
  }
  std::vector<bool> liesInMatch(nodes.size());
  for (std::size_t node = 0; node < nodes.size(); ++node) {
    const auto parent = static_cast<std::size_t>(nodes[node].parent);
    liesInMatch[node] = nodes[node].parent >= 0 && (liesInMatch[parent] || ranks_[parent] != Rank::kNone);
    isShown_[node] = ranks_[node] != Rank::kNone || holdsMatch_[node] || liesInMatch[node];
  }
}

bool ProjectTreeFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  return isShown_.empty() || isShown_[static_cast<std::size_t>(ProjectTreeModel::NodeOf(tree_.index(row, 0, parent)))];
}

bool ProjectTreeFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  return IsBefore(ProjectTreeModel::NodeOf(left), ProjectTreeModel::NodeOf(right));
}

/// Of two nodes with the same parent.
bool ProjectTreeFilter::IsBefore(int left, int right) const {
  const auto line = [this](int node) {
    return lines_.empty() ? codedb::Line{} : lines_[static_cast<std::size_t>(node)];
  };
  return std::pair(line(left), left) < std::pair(line(right), right);
}

/// On screen, with everything unfolded.
bool ProjectTreeFilter::StandsBefore(int left, int right) const {
  const std::vector<navigation::TreeNode>& nodes = tree_.Tree().nodes;
  const auto path = [&nodes](int node) {
    std::vector<int> way;
    for (; node >= 0; node = nodes[static_cast<std::size_t>(node)].parent) way.push_back(node);
    return way;
  };
  const std::vector<int> a = path(left);
  const std::vector<int> b = path(right);
  const auto [ofLeft, ofRight] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  if (ofLeft == a.rend() || ofRight == b.rend()) return a.size() < b.size();
  return IsBefore(*ofLeft, *ofRight);
}

std::vector<int> ProjectTreeFilter::NodesToUnfold() const {
  std::vector<int> unfolded;
  for (std::size_t node = 0; node < ranks_.size(); ++node) {
    const bool isProject = tree_.Tree().IsProject(static_cast<int>(node));
    if (holdsMatch_[node] && (ranks_[node] == Rank::kNone || isProject)) unfolded.push_back(static_cast<int>(node));
  }
  return unfolded;
}

int ProjectTreeFilter::BestMatch() const {
  int best = kNoNode;
  for (int node = 0; node < static_cast<int>(ranks_.size()); ++node) {
    const Rank rank = ranks_[static_cast<std::size_t>(node)];
    if (rank == Rank::kNone) continue;
    // Of equals the one that comes first on screen.
    const auto isBetter = [&] {
      const Rank bestRank = ranks_[static_cast<std::size_t>(best)];
      return rank != bestRank ? rank < bestRank : StandsBefore(node, best);
    };
    if (best == kNoNode || isBetter()) best = node;
  }
  return best;
}

}  // namespace quillmate::ui
