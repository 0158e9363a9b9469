#include "project_panel.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

#include "interaction.h"

namespace quillmate::ui {

FilterLine::FilterLine() {
  setObjectName(QStringLiteral("txtFilter"));
  setPlaceholderText(QStringLiteral("Modul oder Routine"));
  setToolTip(QStringLiteral("Zeigt nur Module und Routinen mit diesem Text im Namen"));
  setClearButtonEnabled(true);
  setMinimumWidth(1);
}

void FilterLine::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      emit Accepted();
      return;
    case Qt::Key_Escape:
      clear();
      emit Rejected();
      return;
    case Qt::Key_Down:
      emit Left();
      return;
    default:
      QLineEdit::keyPressEvent(event);
  }
}

ProjectPanel::ProjectPanel(project::Session& session)
    : session_(session),
      line_(new FilterLine),
      tree_(new NodeTree),
      model_(new ProjectTreeModel(this)),
      shown_(new ProjectTreeFilter(*model_)) {
  SetUpTree(*tree_, QStringLiteral("treProjekt"));
  tree_->setModel(shown_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(line_);
  layout->addWidget(tree_);
  connect(tree_, &NodeTree::NodeChosen, this, [this](const QModelIndex& index) { Choose(shown_->NodeOf(index)); });
  connect(line_, &QLineEdit::textChanged, this, [this](const QString& text) { Apply(text.trimmed()); });
  connect(line_, &FilterLine::Accepted, this, [this] {
    if (Current() != ProjectTreeFilter::kNoNode) Choose(Current());
  });
  connect(line_, &FilterLine::Rejected, this, &ProjectPanel::Rejected);
  connect(line_, &FilterLine::Left, tree_, qOverload<>(&QWidget::setFocus));
}

std::vector<codedb::Line> ProjectPanel::Lines(bool bySource) const {
  if (!bySource) return {};
  return IsExact() ? exact_.lines : session_.StartLines();
}

void ProjectPanel::ShowProject(bool unfolded) {
  const UpdateLock lock(*tree_);
  unfolded_.clear();
  line_->clear();
  exact_ = {};
  SetKnowledge(nullptr);
  shown_->SetLines({});
  model_->SetTree(session_.Tree());
  if (unfolded) tree_->expandAll();
  SetCurrent(0);
  if (bySource_) shown_->SetLines(Lines(true));
}

void ProjectPanel::MarkModule() { model_->Mark(session_.VisibleModule()); }

void ProjectPanel::FocusFilter() {
  line_->setFocus();
  line_->selectAll();
}

void ProjectPanel::StoreUnfolded() {
  unfolded_.clear();
  for (int row = 0; row < shown_->rowCount(); ++row) {
    const QModelIndex module = shown_->index(row, 0);
    if (tree_->isExpanded(module)) unfolded_.push_back(shown_->NodeOf(module));
  }
}

void ProjectPanel::Unfold() {
  for (const int node : unfolded_) tree_->setExpanded(shown_->IndexOf(node), true);
}

void ProjectPanel::Apply(const QString& text) {
  const UpdateLock lock(*tree_);
  const int current = Current();
  if (!isFiltering_) StoreUnfolded();
  isFiltering_ = !text.isEmpty();
  // What is unfolded would be looked up one by one.
  tree_->collapseAll();
  shown_->SetFilter(text);
  if (!isFiltering_) {
    Unfold();
    SetCurrent(current);
    return;
  }
  for (const int node : shown_->ModulesToUnfold()) tree_->setExpanded(shown_->IndexOf(node), true);
  SetCurrent(shown_->BestMatch());
}

void ProjectPanel::Choose(int node) {
  const navigation::TreeNode& chosen = model_->Tree().nodes[static_cast<std::size_t>(node)];
  // Modules have the same node in both trees.
  if (!IsExact() || chosen.parent < 0) {
    emit NodeChosen(node);
  } else {
    emit RoutineChosen(chosen.module, exact_.lines[static_cast<std::size_t>(node)], chosen.text);
  }
}

void ProjectPanel::SetKnowledge(std::shared_ptr<const project::Understanding> known) {
  known_ = std::move(known);
  model_->SetKnowledge(known_);
  SwitchTree();
}

void ProjectPanel::ShowExactOutline(bool on) {
  wantsExact_ = on;
  SwitchTree();
}

/// Shows the one of the two trees that is wanted and there. Modules stay unfolded, the current one stays it.
void ProjectPanel::SwitchTree() {
  if ((wantsExact_ && known_ != nullptr) == IsExact()) return;
  const UpdateLock lock(*tree_);
  const QString filter = line_->text();
  line_->clear();
  StoreUnfolded();
  const int current = Current();
  int module = current;
  if (current >= 0 && model_->Tree().nodes[static_cast<std::size_t>(current)].parent >= 0) {
    module = model_->Tree().nodes[static_cast<std::size_t>(current)].parent;
  }
  exact_ = {};
  if (wantsExact_ && known_ != nullptr) {
    project::ExactTree made = project::MakeExactTree(*known_, *session_.Tree());
    exact_ = {std::make_shared<navigation::ProjectTree>(std::move(made.tree)), std::move(made.lines)};
  }
  shown_->SetLines({});
  model_->SetTree(IsExact() ? exact_.tree : session_.Tree());
  MarkModule();
  Unfold();
  SetCurrent(module);
  if (bySource_) shown_->SetLines(Lines(true));
  line_->setText(filter);
}

void ProjectPanel::OrderBySource(bool on) {
  std::vector<codedb::Line> lines = Lines(on);
  bySource_ = on;
  const UpdateLock lock(*tree_);
  shown_->SetLines(std::move(lines));
  if (isFiltering_) Apply(line_->text().trimmed());
}

}  // namespace quillmate::ui
