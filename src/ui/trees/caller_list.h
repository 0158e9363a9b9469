#pragma once

#include <QLabel>
#include <QToolBar>

#include "node_tree.h"
#include "project_tree_model.h"

/// The result of the search for callers. While it is shown, it takes the places of the project tree and of the main
/// toolbar.
namespace quillmate::ui {

class Shell;

struct CallerList {
  NodeTree* treRoutSuche = nullptr;
  ProjectTreeModel* model = nullptr;
  /// The routine whose callers are shown.
  QLabel* lblRoutSuche = nullptr;
  QToolBar* tobSuche = nullptr;
};

/// Builds tree and toolbar; to be called when the commands are there.
void BuildCallerList(Shell& shell);

void ShowCallers(Shell& shell, navigation::ProjectTree callers, const QString& routine);
void CloseCallers(Shell& shell);

}  // namespace quillmate::ui
