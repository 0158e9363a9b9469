#include "project_tree_model.h"

#include <utility>

#include "qt_text.h"

namespace quillmate::ui {

void ProjectTreeModel::SetTree(navigation::ProjectTree tree) {
  beginResetModel();
  tree_ = std::move(tree);
  marked_ = -1;
  roots_.clear();
  children_.assign(tree_.nodes.size(), {});
  rows_.resize(tree_.nodes.size());
  for (std::size_t node = 0; node < tree_.nodes.size(); ++node) {
    const int parent = tree_.nodes[node].parent;
    std::vector<int>& siblings = parent < 0 ? roots_ : children_[static_cast<std::size_t>(parent)];
    rows_[node] = static_cast<int>(siblings.size());
    siblings.push_back(static_cast<int>(node));
  }
  endResetModel();
}

int ProjectTreeModel::NodeOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<int>(index.internalId()) : -1;
}

QModelIndex ProjectTreeModel::IndexOf(int node) const {
  if (node < 0 || node >= static_cast<int>(rows_.size())) return {};
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
