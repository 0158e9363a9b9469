#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QWidget>

#include "host_tree_model.h"
#include "node_tree.h"

namespace quillmate::ui {

/// The tree of what can be read, `treApp`, with a line above it that leaves only what has some letters, and below it
/// what is ticked.
class SourcePanel : public QWidget {
  Q_OBJECT

 public:
  explicit SourcePanel(HostTreeModel& model);

  QTreeView& Tree() const { return *tree_; }
  /// The node that is the current one, or stands for another, in the model of the panel.
  QModelIndex Current() const { return shown_->mapToSource(tree_->currentIndex()); }
  void SetCurrent(const QModelIndex& node);
  /// Ticks or unticks what the line leaves.
  void TickShown(bool ticked);
  /// Unfolds everything and counts, after the model has another tree.
  void Refresh();

 signals:
  void ReadAllWanted();
  /// The context menu is wanted; the place is global.
  void MenuWanted(const QPoint& place);

 private:
  void Count();

  HostTreeModel& model_;
  bool isTicking_ = false;
  QSortFilterProxyModel* shown_;
  QLineEdit* line_;
  TickTree* tree_;
  QLabel* count_;
  QPushButton* all_;
  QPushButton* none_;
  QPushButton* read_;
};

}  // namespace quillmate::ui
