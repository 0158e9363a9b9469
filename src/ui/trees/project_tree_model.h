#pragma once

#include <QAbstractItemModel>
#include <string>
#include <vector>

#include <quillmate/navigation/project_tree.h>

#include "icons.h"

namespace quillmate::ui {

/// Role of a node of the module on screen: true. Such a node is shown yellow on black.
inline constexpr int kMarkedRole = Qt::UserRole;

/// A tree of modules and routines as a model. A node is known by its index in the tree's node list.
class ProjectTreeModel : public QAbstractItemModel {
 public:
  using QAbstractItemModel::QAbstractItemModel;

  const navigation::ProjectTree& Tree() const noexcept { return tree_; }
  /// Shows another tree; nothing is marked then.
  void SetTree(navigation::ProjectTree tree);

  /// The routines of a module as they stand in the tree, by name, or as they stand in the code.
  enum class Order { kName, kSource };
  void SetOrder(Order order);
  /// Leaves only the nodes whose text contains another one, in any case of letters: a module with them, and all
  /// routines of such a module. An empty text leaves everything.
  void SetFilter(const QString& text);
  /// Nodes of the modules that are left for their routines' sake alone.
  std::vector<int> ModulesToUnfold() const;
  /// The node that the user means with the filter, the one with just that name rather than one that begins with it or
  /// contains it; -1 when nothing is left.
  int BestMatch() const;

  /// The node's index in the node list; -1 for no node.
  static int NodeOf(const QModelIndex& index);
  /// Invalid for a node that the filter takes away.
  QModelIndex IndexOf(int node) const;

  /// Moves the mark to the node with that key. A key without a node takes the mark away.
  void Mark(const std::string& key);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  void Arrange();
  std::vector<bool> Matches() const;
  int Rank(int node) const;
  const std::vector<int>& Children(int node) const;
  const navigation::TreeNode& Node(const QModelIndex& index) const;

  navigation::ProjectTree tree_;
  Order order_ = Order::kName;
  QString filter_;
  /// What is left, in the order shown.
  std::vector<int> roots_;
  std::vector<std::vector<int>> children_;
  /// Position of each node among its siblings; -1 for one that is not shown.
  std::vector<int> rows_;
  int marked_ = -1;
  mutable IconSet icons_;
};

}  // namespace quillmate::ui
