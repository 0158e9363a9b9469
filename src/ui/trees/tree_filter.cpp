#include "tree_filter.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "project_view.h"
#include "shell.h"

namespace quillmate::ui {

TreeFilter::TreeFilter(Shell& shell) : shell_(shell) {
  setObjectName(QStringLiteral("txtFilter"));
  setPlaceholderText(QStringLiteral("Modul oder Routine"));
  setToolTip(QStringLiteral("Zeigt nur Module und Routinen mit diesem Text im Namen"));
  setClearButtonEnabled(true);
  setMinimumWidth(1);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) { Apply(text.trimmed()); });
}

void TreeFilter::StoreUnfolded() {
  unfolded_.clear();
  const QAbstractItemModel& model = *shell_.treProjekt->model();
  for (int row = 0; row < model.rowCount(); ++row) {
    const QModelIndex module = model.index(row, 0);
    if (shell_.treProjekt->isExpanded(module)) unfolded_.push_back(ProjectTreeModel::NodeOf(module));
  }
}

void TreeFilter::Unfold() {
  for (const int node : unfolded_) shell_.treProjekt->setExpanded(shell_.projectModel->IndexOf(node), true);
}

void TreeFilter::Apply(const QString& text) {
  NodeTree& tree = *shell_.treProjekt;
  const UpdateLock lock(tree);
  const int current = ProjectTreeModel::NodeOf(tree.currentIndex());
  if (!isFiltering_) StoreUnfolded();
  isFiltering_ = !text.isEmpty();
  shell_.projectModel->SetFilter(text);
  if (!isFiltering_) {
    Unfold();
    tree.setCurrentIndex(shell_.projectModel->IndexOf(current));
    return;
  }
  for (const int node : shell_.projectModel->ModulesToUnfold()) {
    tree.setExpanded(shell_.projectModel->IndexOf(node), true);
  }
  tree.setCurrentIndex(shell_.projectModel->IndexOf(shell_.projectModel->BestMatch()));
}

void TreeFilter::Clear() {
  unfolded_.clear();
  clear();
}

void TreeFilter::OrderBySource(bool on) {
  NodeTree& tree = *shell_.treProjekt;
  const UpdateLock lock(tree);
  const int current = ProjectTreeModel::NodeOf(tree.currentIndex());
  if (!isFiltering_) StoreUnfolded();
  shell_.projectModel->SetOrder(on ? ProjectTreeModel::Order::kSource : ProjectTreeModel::Order::kName);
  if (isFiltering_) {
    Apply(text().trimmed());
    return;
  }
  Unfold();
  tree.setCurrentIndex(shell_.projectModel->IndexOf(current));
}

void TreeFilter::Go() {
  const int node = ProjectTreeModel::NodeOf(shell_.treProjekt->currentIndex());
  if (node >= 0) shell_.Guarded([this, node] { ShowNode(shell_, node); });
}

void TreeFilter::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Go();
      return;
    case Qt::Key_Escape:
      clear();
      shell_.Editor().setFocus();
      return;
    case Qt::Key_Down:
      shell_.treProjekt->setFocus();
      return;
    default:
      QLineEdit::keyPressEvent(event);
  }
}

TreeFilter* AddProjectTree(Shell& shell) {
  auto* filter = new TreeFilter(shell);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(filter);
  layout->addWidget(shell.treProjekt);
  shell.trees->addWidget(page);
  return filter;
}

}  // namespace quillmate::ui
