#pragma once

#include <QLineEdit>
#include <QWidget>
#include <string>
#include <vector>

#include <quillmate/project/session.h>

#include "node_tree.h"
#include "project_tree_filter.h"
#include "project_tree_model.h"

namespace quillmate::ui {

/// The line above the project tree, `txtFilter`.
class FilterLine : public QLineEdit {
  Q_OBJECT

 public:
  FilterLine();

 signals:
  /// Enter, Esc and Down.
  void Accepted();
  void Rejected();
  void Left();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

/// The project tree `treProjekt` and the line above it: a few letters, and only the modules and routines that have them
/// are left; Enter goes to the best match. While the line is empty the tree is as it always was.
class ProjectPanel : public QWidget {
  Q_OBJECT

 public:
  explicit ProjectPanel(project::Session& session);

  /// Shows the session's project with nothing unfolded, or everything; its first node is the current one.
  void ShowProject(bool unfolded);
  /// The node of the visible module stands out.
  void MarkModule();
  /// Lists routines in the order of the source instead of that of their names. Throws when the index can't be asked;
  /// nothing changes then.
  void OrderBySource(bool on);
  void FocusFilter();

 signals:
  /// A node is to be shown.
  void NodeChosen(int node);
  /// The user goes back to the code.
  void Rejected();

 private:
  std::vector<codedb::Line> Lines(bool bySource) const;
  void Apply(const QString& text);
  void StoreUnfolded();
  void Unfold();
  void SetCurrent(int node) { tree_->setCurrentIndex(shown_->IndexOf(node)); }
  int Current() const { return shown_->NodeOf(tree_->currentIndex()); }

  project::Session& session_;
  FilterLine* line_;
  NodeTree* tree_;
  ProjectTreeModel* model_;
  ProjectTreeFilter* shown_;
  bool bySource_ = false;
  /// Nodes of the modules that were unfolded before the first letter was typed.
  std::vector<int> unfolded_;
  bool isFiltering_ = false;
};

}  // namespace quillmate::ui
