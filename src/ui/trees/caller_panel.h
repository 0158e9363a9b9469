#pragma once

#include <QLabel>
#include <QWidget>
#include <string>

#include "node_tree.h"
#include "project_tree_model.h"

namespace quillmate::ui {

/// The result of the search for callers: the name of the routine and the tree `treRoutSuche` below it.
class CallerPanel : public QWidget {
  Q_OBJECT

 public:
  CallerPanel();

  /// Shows what was found for a routine, all unfolded.
  void ShowCallers(navigation::ProjectTree callers, const QString& routine);
  void Clear();

 signals:
  /// A node is to be shown; it has the same key in the project tree.
  void NodeChosen(const navigation::TreeNode& node);

 private:
  /// The routine whose callers are shown.
  QLabel* lblRoutSuche_;
  NodeTree* tree_;
  ProjectTreeModel* model_;
};

}  // namespace quillmate::ui
