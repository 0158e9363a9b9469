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
  /// Shows the routines that the code has instead of those of the index, as soon as they are known.
  void ShowExactOutline(bool on);
  /// Shows what the modules declare beside their routines, as soon as it is known.
  void ShowDeclarations(bool on);
  /// What is known of the session's project; null for nothing.
  void SetKnowledge(std::shared_ptr<const project::Understanding> known);
  void FocusFilter();
  /// Goes to the node of the visible module.
  void FocusModule();

 signals:
  /// A node is to be shown.
  void NodeChosen(int node);
  /// A routine that the index need not know is to be shown.
  void RoutineChosen(codedb::ModuleNumber module, codedb::Line line, const std::string& name);
  /// A declaration that is no routine is to be shown.
  void DeclarationChosen(symbols::SymbolId declaration);
  /// The user goes back to the code.
  void Rejected();

 private:
  std::vector<codedb::Line> Lines(bool bySource) const;
  bool HoldsDeclarations() const { return !shape_.declarations.empty(); }
  void MakeShape();
  void SwitchTree();
  void Choose(int node);
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
  std::shared_ptr<const project::Understanding> known_;
  bool wantsExact_ = false;
  bool wantsDeclarations_ = false;
  /// What is shown in the place of the session's tree; null for that tree itself.
  struct Shape {
    bool isExact = false;
    std::shared_ptr<const navigation::ProjectTree> tree;
    std::vector<codedb::Line> lines;
    std::vector<symbols::SymbolId> declarations;
  };
  Shape shape_;
  /// Nodes that were unfolded before the first letter was typed.
  std::vector<int> unfolded_;
  bool isFiltering_ = false;
};

}  // namespace quillmate::ui
