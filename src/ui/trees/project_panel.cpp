#include "project_panel.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

#include <quillmate/project/declaration_tree.h>
#include <quillmate/project/exact_tree.h>

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
  return shape_.tree != nullptr ? shape_.lines : session_.StartLines();
}

void ProjectPanel::ShowProject(bool unfolded) {
  const UpdateLock lock(*tree_);
  unfolded_.clear();
  line_->clear();
  shape_ = {};
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

void ProjectPanel::FocusModule() {
  line_->clear();
  SetCurrent(model_->Tree().Find(session_.VisibleModule()));
  tree_->setFocus();
}

void ProjectPanel::StoreUnfolded() {
  unfolded_.clear();
  const auto store = [this](const QModelIndex& parent, const auto& self) -> void {
    for (int row = 0; row < shown_->rowCount(parent); ++row) {
      const QModelIndex node = shown_->index(row, 0, parent);
      if (!tree_->isExpanded(node)) continue;
      unfolded_.push_back(shown_->NodeOf(node));
      // Projects, modules, types: three levels at most.
      self(node, self);
    }
  };
  store({}, store);
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
  for (const int node : shown_->NodesToUnfold()) tree_->setExpanded(shown_->IndexOf(node), true);
  SetCurrent(shown_->BestMatch());
}

void ProjectPanel::Choose(int node) {
  const navigation::ProjectTree& tree = model_->Tree();
  const navigation::TreeNode& chosen = tree.nodes[static_cast<std::size_t>(node)];
  if (tree.IsProject(node)) return;
  if (const symbols::SymbolId declaration = model_->DeclarationOf(node); declaration != symbols::kNone) {
    emit DeclarationChosen(declaration);
  } else if (shape_.isExact && !tree.IsModule(node)) {
    emit RoutineChosen(chosen.module, shape_.lines[static_cast<std::size_t>(node)], chosen.text);
  } else {
    const navigation::ProjectTree& own = *session_.Tree();
    emit NodeChosen(tree.IsModule(node) ? own.Find(chosen.module) : own.Find(chosen.routine));
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

void ProjectPanel::ShowDeclarations(bool on) {
  wantsDeclarations_ = on;
  SwitchTree();
}

void ProjectPanel::MakeShape() {
  shape_ = {};
  if (known_ == nullptr) return;
  if (wantsExact_) {
    project::ExactTree made = project::MakeExactTree(*known_, *session_.Tree());
    shape_ = {true, std::make_shared<navigation::ProjectTree>(std::move(made.tree)), std::move(made.lines), {}};
  }
  if (wantsDeclarations_) {
    const navigation::ProjectTree& base = wantsExact_ ? *shape_.tree : *session_.Tree();
    auto made = project::MakeDeclarationTree(*known_, base, wantsExact_ ? shape_.lines : session_.StartLines());
    shape_.tree = std::make_shared<navigation::ProjectTree>(std::move(made.tree));
    shape_.lines = std::move(made.lines);
    shape_.declarations = std::move(made.declarations);
  }
}

/// Shows the tree that is wanted, as soon as it can be made. Modules stay unfolded, the current one stays it.
void ProjectPanel::SwitchTree() {
  const bool known = known_ != nullptr;
  if (shape_.isExact == (wantsExact_ && known) && HoldsDeclarations() == (wantsDeclarations_ && known)) return;
  const UpdateLock lock(*tree_);
  const QString filter = line_->text();
  line_->clear();
  StoreUnfolded();
  const auto moduleOf = [this](int node) {
    const int module = node < 0 ? node : model_->Tree().ModuleOf(node);
    return module < 0 ? codedb::ModuleNumber{} : model_->Tree().nodes[static_cast<std::size_t>(module)].module;
  };
  std::vector<codedb::ModuleNumber> unfolded;
  for (const int node : unfolded_) {
    if (model_->Tree().IsModule(node)) unfolded.push_back(moduleOf(node));
  }
  const codedb::ModuleNumber current = moduleOf(Current());
  MakeShape();
  shown_->SetLines({});
  model_->SetTree(shape_.tree != nullptr ? shape_.tree : session_.Tree(), shape_.declarations);
  MarkModule();
  unfolded_.clear();
  for (const codedb::ModuleNumber module : unfolded) unfolded_.push_back(model_->Tree().Find(module));
  for (int row = 0; row < model_->rowCount(); ++row) {
    const int node = ProjectTreeModel::NodeOf(model_->index(row, 0));
    if (model_->Tree().IsProject(node)) unfolded_.push_back(node);
  }
  Unfold();
  SetCurrent(model_->Tree().Find(current));
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
