#pragma once

#include <QAbstractItemModel>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/navigation/project_tree.h>
#include <quillmate/project/understanding.h>

#include "icons.h"
#include "symbol_icons.h"

namespace quillmate::ui {

/// Role of a node of the module on screen: true. Such a node is shown yellow on black.
inline constexpr int kMarkedRole = Qt::UserRole;

/// A tree of modules, routines and perhaps declarations as a model. A node is known by its index in the tree's node
/// list.
class ProjectTreeModel : public QAbstractItemModel {
 public:
  explicit ProjectTreeModel(QObject* parent = nullptr);

  const navigation::ProjectTree& Tree() const noexcept { return *tree_; }
  /// Shows another tree; nothing is marked then.
  void SetTree(std::shared_ptr<const navigation::ProjectTree> tree);
  /// The same with the declarations that some of the nodes stand for: one for each node, kNone for none.
  void SetTree(std::shared_ptr<const navigation::ProjectTree> tree, std::vector<symbols::SymbolId> declarations);
  /// kNone for a node that stands for none.
  symbols::SymbolId DeclarationOf(int node) const;

  /// The node's index in the node list; -1 for no node.
  static int NodeOf(const QModelIndex& index);
  QModelIndex IndexOf(int node) const;

  /// Moves the mark to the node of a module. One without a node takes the mark away.
  void Mark(codedb::ModuleNumber module);
  /// Modules tell their project and file, and those whose routines the index has wrong get a sign. Null takes it away.
  void SetKnowledge(std::shared_ptr<const project::Understanding> known);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  std::size_t Slot(const QModelIndex& parent) const { return static_cast<std::size_t>(NodeOf(parent) + 1); }
  const navigation::TreeNode& Node(const QModelIndex& index) const;
  const project::OutlineDifference* DifferenceOf(int node) const;
  QIcon IconOf(int node) const;
  QString ToolTip(int node) const;
  QString ModuleToolTip(int node) const;

  std::shared_ptr<const navigation::ProjectTree> tree_;
  /// The nodes by parent, in their order: those of node n are from firstChild_[n + 1] on, the modules from
  /// firstChild_[0].
  std::vector<int> children_;
  std::vector<int> firstChild_;
  /// Position of each node among its siblings.
  std::vector<int> rows_;
  int marked_ = -1;
  std::shared_ptr<const project::Understanding> known_;
  std::vector<symbols::SymbolId> declarations_;
  mutable IconSet icons_;
  mutable SymbolIcons symbolIcons_;
};

}  // namespace quillmate::ui
