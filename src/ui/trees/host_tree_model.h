#pragma once

#include <QAbstractItemModel>
#include <string>
#include <vector>

#include <quillmate/host/host_tree.h>

#include "icons.h"

namespace quillmate::ui {

/// What could not be read of the sources.
struct UnreadSource {
  /// Full path, or a project's name where it has none; UTF-8.
  std::string source;
  std::string reason;
};

/// The host tree as a model with check boxes, and after the projects, grey and without a box, what could not be read.
/// Ticking a project ticks all its modules; a project with a ticked module counts as ticked, so that the reader looks
/// into it.
class HostTreeModel : public QAbstractItemModel {
 public:
  using QAbstractItemModel::QAbstractItemModel;

  const host::HostTree& Tree() const noexcept { return tree_; }
  /// Shows another tree.
  void SetTree(host::HostTree tree, std::vector<UnreadSource> unread = {});
  /// Null for a node that could be read.
  const UnreadSource* UnreadAt(const QModelIndex& index) const;

  /// Position of the project that a node is or belongs to, 0-based; -1 for no node, and one that could not be read.
  int ProjectOf(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const host::HostModuleNode* Module(const QModelIndex& index) const;
  void TickProject(int project, bool ticked);
  void TickModule(int project, int module, bool ticked);

  host::HostTree tree_;
  std::vector<UnreadSource> unread_;
  mutable IconSet icons_;
};

}  // namespace quillmate::ui
