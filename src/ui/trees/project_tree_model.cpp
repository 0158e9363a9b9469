#include "project_tree_model.h"

#include <utility>

#include "qt_text.h"

namespace quillmate::ui {

ProjectTreeModel::ProjectTreeModel(QObject* parent) : QAbstractItemModel(parent) {
  SetTree(std::make_shared<navigation::ProjectTree>());
}

void ProjectTreeModel::SetTree(std::shared_ptr<const navigation::ProjectTree> tree) {
  beginResetModel();
  tree_ = std::move(tree);
  marked_ = -1;
  const std::vector<navigation::TreeNode>& nodes = tree_->nodes;
  const auto slot = [&nodes](std::size_t node) { return static_cast<std::size_t>(nodes[node].parent + 1); };
  firstChild_.assign(nodes.size() + 2, 0);
  rows_.resize(nodes.size());
  for (std::size_t node = 0; node < nodes.size(); ++node) rows_[node] = firstChild_[slot(node) + 1]++;
  for (std::size_t i = 1; i < firstChild_.size(); ++i) firstChild_[i] += firstChild_[i - 1];
  children_.resize(nodes.size());
  for (std::size_t node = 0; node < nodes.size(); ++node) {
    children_[static_cast<std::size_t>(firstChild_[slot(node)] + rows_[node])] = static_cast<int>(node);
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

void ProjectTreeModel::Mark(codedb::ModuleNumber module) {
  const int node = tree_->Find(module);
  const int before = std::exchange(marked_, node);
  for (const int changed : {before, node}) {
    const QModelIndex index = IndexOf(changed);
    if (index.isValid()) emit dataChanged(index, index, {kMarkedRole});
  }
}

const navigation::TreeNode& ProjectTreeModel::Node(const QModelIndex& index) const {
  return tree_->nodes[static_cast<std::size_t>(NodeOf(index))];
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return IndexOf(children_[static_cast<std::size_t>(firstChild_[Slot(parent)] + row)]);
}

QModelIndex ProjectTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(Node(index).parent) : QModelIndex();
}

int ProjectTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > 0 ? 0 : firstChild_[Slot(parent) + 1] - firstChild_[Slot(parent)];
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

Qt::ItemFlags ProjectTreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractItemModel::flags(index);
  // A large tree is unfolded in no time when nobody has to remember that its routines are unfolded, too.
  return index.isValid() && Node(index).parent >= 0 ? usual | Qt::ItemNeverHasChildren : usual;
}

}  // namespace quillmate::ui
