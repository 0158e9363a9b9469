#include "caller_panel.h"

#include <QVBoxLayout>
#include <memory>
#include <utility>

#include "cut_label.h"

namespace quillmate::ui {

CallerPanel::CallerPanel() : lblRoutSuche_(new CutLabel), tree_(new NodeTree), model_(new ProjectTreeModel(this)) {
  lblRoutSuche_->setObjectName(QStringLiteral("lblRoutSuche"));
  lblRoutSuche_->setContentsMargins(4, 3, 4, 3);
  SetUpTree(*tree_, QStringLiteral("treRoutSuche"));
  tree_->setModel(model_);
  setFocusProxy(tree_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(lblRoutSuche_);
  layout->addWidget(tree_);
  connect(tree_, &NodeTree::NodeChosen, this, [this](const QModelIndex& index) {
    emit NodeChosen(model_->Tree().nodes[static_cast<std::size_t>(ProjectTreeModel::NodeOf(index))]);
  });
}

void CallerPanel::ShowCallers(navigation::ProjectTree callers, const QString& routine) {
  model_->SetTree(std::make_shared<navigation::ProjectTree>(std::move(callers)));
  tree_->expandAll();
  lblRoutSuche_->setText(QStringLiteral("Aufrufe: ") + routine);
  tree_->setCurrentIndex(model_->IndexOf(0));
}

void CallerPanel::Clear() {
  model_->SetTree(std::make_shared<navigation::ProjectTree>());
  lblRoutSuche_->clear();
}

}  // namespace quillmate::ui
