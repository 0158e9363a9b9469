#include "project_tree_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <quillmate/codedb/codes.h>

#include "qt_text.h"

namespace quillmate::ui {

void ProjectTreeModel::SetTree(navigation::ProjectTree tree) {
  beginResetModel();
  tree_ = std::move(tree);
  marked_ = -1;
  Arrange();
  endResetModel();
}

void ProjectTreeModel::SetOrder(Order order) {
  beginResetModel();
  order_ = order;
  Arrange();
  endResetModel();
}

void ProjectTreeModel::SetFilter(const QString& text) {
  beginResetModel();
  filter_ = text;
  Arrange();
  endResetModel();
}

std::vector<bool> ProjectTreeModel::Matches() const {
  std::vector<bool> matches(tree_.nodes.size(), true);
  if (filter_.isEmpty()) return matches;
  for (std::size_t node = 0; node < matches.size(); ++node) {
    matches[node] = FromCode(tree_.nodes[node].text).contains(filter_, Qt::CaseInsensitive);
  }
  return matches;
}

void ProjectTreeModel::Arrange() {
  const std::size_t count = tree_.nodes.size();
  const std::vector<bool> matches = Matches();
  std::vector<bool> shown = matches;
  for (std::size_t node = 0; node < count; ++node) {
    if (tree_.nodes[node].parent < 0) continue;
    const auto parent = static_cast<std::size_t>(tree_.nodes[node].parent);
    if (matches[parent]) shown[node] = true;
    if (matches[node]) shown[parent] = true;
  }
  roots_.clear();
  children_.assign(count, {});
  for (std::size_t node = 0; node < count; ++node) {
    if (!shown[node]) continue;
    const int parent = tree_.nodes[node].parent;
    (parent < 0 ? roots_ : children_[static_cast<std::size_t>(parent)]).push_back(static_cast<int>(node));
  }
  if (order_ == Order::kSource) {
    const auto number = [this](int node) { return codedb::KeyNumber(tree_.nodes[static_cast<std::size_t>(node)].key); };
    for (std::vector<int>& routines : children_) std::ranges::sort(routines, {}, number);
  }
  rows_.assign(count, -1);
  const auto place = [this](const std::vector<int>& siblings) {
    int row = 0;
    for (const int node : siblings) rows_[static_cast<std::size_t>(node)] = row++;
  };
  place(roots_);
  for (const std::vector<int>& routines : children_) place(routines);
}

std::vector<int> ProjectTreeModel::ModulesToUnfold() const {
  const std::vector<bool> matches = Matches();
  std::vector<int> modules;
  std::ranges::copy_if(roots_, std::back_inserter(modules),
                       [&matches](int node) { return !matches[static_cast<std::size_t>(node)]; });
  return modules;
}

int ProjectTreeModel::Rank(int node) const {
  const QString text = FromCode(tree_.nodes[static_cast<std::size_t>(node)].text);
  if (!text.contains(filter_, Qt::CaseInsensitive)) return 3;
  if (!text.startsWith(filter_, Qt::CaseInsensitive)) return 2;
  return text.size() > filter_.size() ? 1 : 0;
}

int ProjectTreeModel::BestMatch() const {
  int best = -1;
  int bestRank = 4;
  const auto consider = [&](int node) {
    const int rank = Rank(node);
    if (rank >= bestRank) return;
    best = node;
    bestRank = rank;
  };
  for (const int module : roots_) {
    consider(module);
    for (const int routine : Children(module)) consider(routine);
  }
  return best;
}

int ProjectTreeModel::NodeOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<int>(index.internalId()) : -1;
}

QModelIndex ProjectTreeModel::IndexOf(int node) const {
  if (node < 0 || node >= static_cast<int>(rows_.size()) || rows_[static_cast<std::size_t>(node)] < 0) return {};
  return createIndex(rows_[static_cast<std::size_t>(node)], 0, static_cast<quintptr>(node));
}

void ProjectTreeModel::Mark(const std::string& key) {
  const int node = tree_.Find(key);
  const int before = std::exchange(marked_, node);
  for (const int changed : {before, node}) {
    const QModelIndex index = IndexOf(changed);
    if (index.isValid()) emit dataChanged(index, index, {kMarkedRole});
  }
}

const std::vector<int>& ProjectTreeModel::Children(int node) const {
  return node < 0 ? roots_ : children_[static_cast<std::size_t>(node)];
}

const navigation::TreeNode& ProjectTreeModel::Node(const QModelIndex& index) const {
  return tree_.nodes[static_cast<std::size_t>(NodeOf(index))];
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return IndexOf(Children(NodeOf(parent))[static_cast<std::size_t>(row)]);
}

QModelIndex ProjectTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(Node(index).parent) : QModelIndex();
}

int ProjectTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > 0 ? 0 : static_cast<int>(Children(NodeOf(parent)).size());
}

int ProjectTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant ProjectTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return FromCode(Node(index).text);
    case Qt::DecorationRole:
      return icons_.Of(Node(index).image);
    case kMarkedRole:
      return NodeOf(index) == marked_;
    default:
      return {};
  }
}

}  // namespace quillmate::ui
