#pragma once

#include <QAbstractItemModel>
#include <array>
#include <vector>

#include <quillmate/symbols/compare_outline.h>

namespace quillmate::ui {

/// What changed as a tree; what the filter leaves out is no row.
class CompareTreeModel : public QAbstractItemModel {
 public:
  using QAbstractItemModel::QAbstractItemModel;

  void SetOutline(std::vector<symbols::ChangeNode> outline);
  void SetFilter(const symbols::OutlineFilter& filter);

  const std::vector<symbols::ChangeNode>& Outline() const noexcept { return outline_; }
  const symbols::ChangeNode& NodeOf(const QModelIndex& index) const { return outline_[NumberOf(index)]; }
  std::size_t NumberOf(const QModelIndex& index) const noexcept { return static_cast<std::size_t>(index.internalId()); }
  /// Invalid for a node that the filter leaves out.
  QModelIndex IndexOf(std::size_t node, int column = 0) const;
  bool IsShown(std::size_t node) const { return shown_[node]; }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void Arrange();
  const std::vector<std::size_t>& ChildrenOf(const QModelIndex& parent) const;

  std::vector<symbols::ChangeNode> outline_;
  symbols::OutlineFilter filter_;
  std::vector<bool> shown_;
  /// Shown nodes by parent; the last list is that of the top.
  std::vector<std::vector<std::size_t>> children_ = std::vector<std::vector<std::size_t>>(1);
  std::vector<int> rows_;
};

}  // namespace quillmate::ui
