#pragma once

#include <QSortFilterProxyModel>
#include <QString>
#include <vector>

#include "project_tree_model.h"

namespace quillmate::ui {

/// What of a project tree is shown, and in which order. Nodes are known by their index in the tree's node list.
class ProjectTreeFilter : public QSortFilterProxyModel {
 public:
  explicit ProjectTreeFilter(ProjectTreeModel& tree);

  /// Leaves only the nodes whose text contains another one, regardless of case, what they are in, and all that is
  /// in them. An empty text leaves everything.
  void SetFilter(const QString& text);
  /// Routines by their first lines (one for each node) as they are in the code; as they come in the tree, by name,
  /// without lines.
  void SetLines(std::vector<codedb::Line> lines);

  static constexpr int kNoNode = -1;
  int NodeOf(const QModelIndex& index) const { return ProjectTreeModel::NodeOf(mapToSource(index)); }
  /// Invalid for a node that the filter takes away.
  QModelIndex IndexOf(int node) const { return mapFromSource(tree_.IndexOf(node)); }

  /// Nodes that are left only for the sake of what is in them.
  std::vector<int> NodesToUnfold() const;
  /// The node that the user means with the filter, the one with just that name rather than one that begins with it or
  /// contains it; kNoNode when nothing is left.
  int BestMatch() const;

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  enum class Rank : std::uint8_t { kWhole, kStart, kInside, kNone };
  void RankNodes();
  bool IsBefore(int left, int right) const;
  bool StandsBefore(int left, int right) const;

  ProjectTreeModel& tree_;
  QString filter_;
  std::vector<codedb::Line> lines_;
  /// How the filter is found in each node, whether a node below it has it, and whether the node is shown; empty without
  /// a filter.
  std::vector<Rank> ranks_;
  std::vector<bool> holdsMatch_;
  std::vector<bool> isShown_;
};

}  // namespace quillmate::ui
