#include "caller_list.h"

#include <QVBoxLayout>
#include <utility>

#include "icons.h"
#include "project_view.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

QWidget* BuildPage(CallerList& list) {
  list.lblRoutSuche = new QLabel;
  list.lblRoutSuche->setObjectName(QStringLiteral("lblRoutSuche"));
  list.lblRoutSuche->setTextFormat(Qt::PlainText);
  list.lblRoutSuche->setContentsMargins(4, 3, 4, 3);
  // A long name is cut off instead of widening the column.
  list.lblRoutSuche->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

  list.treRoutSuche = new NodeTree;
  SetUpTree(*list.treRoutSuche, QStringLiteral("treRoutSuche"));
  list.model = new ProjectTreeModel(list.treRoutSuche);
  list.treRoutSuche->setModel(list.model);

  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(list.lblRoutSuche);
  layout->addWidget(list.treRoutSuche);
  return page;
}

void BuildToolBar(Shell& shell) {
  QToolBar* bar = shell.window.addToolBar(QStringLiteral("Routinensuche"));
  bar->setObjectName(QStringLiteral("tobSuche"));
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  bar->setIconSize(shell.commands->ToolBar().iconSize());
  QAction* close = bar->addAction(LoadIcon(QStringLiteral("close")), QStringLiteral("Schliesst die Routinensuche"));
  close->setObjectName(QStringLiteral("close"));
  QObject::connect(close, &QAction::triggered, close,
                   [&shell] { shell.commands->Item(CommandId::kCloseCallerList).trigger(); });
  bar->hide();
  shell.callers.tobSuche = bar;
}

/// A node stands for the one of that name in the project tree.
void ShowCaller(Shell& shell, const QModelIndex& index) {
  const navigation::ProjectTree& tree = shell.callers.model->Tree();
  const int node =
      shell.projectModel->Tree().Find(tree.nodes[static_cast<std::size_t>(ProjectTreeModel::NodeOf(index))].key);
  if (node >= 0) ShowNode(shell, node);
}

void SetShown(Shell& shell, bool shown) {
  shell.ShowTree(shown ? *shell.callers.treRoutSuche : *shell.treProjekt);
  shell.callers.tobSuche->setVisible(shown);
  shell.commands->ToolBar().setVisible(!shown);
  shell.commands->Item(CommandId::kCloseCallerList).setEnabled(shown);
}

}  // namespace

void BuildCallerList(Shell& shell) {
  shell.trees->addWidget(BuildPage(shell.callers));
  shell.callers.treRoutSuche->onNode = [&shell](const QModelIndex& index) {
    shell.Guarded([&shell, index] { ShowCaller(shell, index); });
  };
  BuildToolBar(shell);
  shell.commands->Item(CommandId::kCloseCallerList).setEnabled(false);
}

void ShowCallers(Shell& shell, navigation::ProjectTree callers, const QString& routine) {
  if (callers.moduleCount == 0) {
    CloseCallers(shell);
    return;
  }
  const UpdateLock lock(shell.window);
  shell.callers.model->SetTree(std::move(callers));
  shell.callers.treRoutSuche->expandAll();
  shell.callers.lblRoutSuche->setText(QStringLiteral("Aufrufe: ") + routine);
  shell.callers.treRoutSuche->setCurrentIndex(shell.callers.model->IndexOf(0));
  SetShown(shell, true);
  shell.callers.treRoutSuche->setFocus();
}

void CloseCallers(Shell& shell) {
  const UpdateLock lock(shell.window);
  const bool hadFocus = shell.callers.treRoutSuche->hasFocus();
  SetShown(shell, false);
  if (hadFocus) shell.Editor().setFocus();
  shell.callers.model->SetTree({});
  shell.callers.lblRoutSuche->clear();
}

}  // namespace quillmate::ui
