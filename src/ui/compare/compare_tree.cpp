#include "compare_tree.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <utility>

#include "compare_colours.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::ChangeNode;
using symbols::ChangeState;
using symbols::kNone;

/// A tree of more nodes is shown with its modules closed.
constexpr int kMostOpen = 3000;
/// The states in the order of the filter, with their names there.
struct StateBox {
  ChangeState state;
  const char* name;
  const char* caption;
};
constexpr std::array kBoxes = {
    StateBox{ChangeState::kNew, "chkNeu", "neu"},
    StateBox{ChangeState::kGone, "chkEntfallen", "entfallen"},
    StateBox{ChangeState::kChanged, "chkGeaendert", "geändert"},
    StateBox{ChangeState::kLayout, "chkNurForm", "nur Form"},
    StateBox{ChangeState::kMoved, "chkVerschoben", "verschoben"},
    StateBox{ChangeState::kRenamed, "chkUmbenannt", "umbenannt"},
};

bool HasChildren(const std::vector<ChangeNode>& outline, std::size_t node) {
  return node + 1 < outline.size() && outline[node + 1].parent == node;
}

bool IsHead(const ChangeNode& node) {
  return node.kind == ChangeNode::Kind::kModule || node.kind == ChangeNode::Kind::kProject;
}

}  // namespace

CompareTree::CompareTree() : filter_(new QLineEdit), model_(new CompareTreeModel(this)), tree_(new QTreeView) {
  tree_->setObjectName(QStringLiteral("treAenderungen"));
  tree_->setAccessibleName(QStringLiteral("Was sich geändert hat"));
  tree_->setUniformRowHeights(true);
  tree_->setAllColumnsShowFocus(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setModel(model_);
  tree_->header()->resizeSection(0, fontMetrics().averageCharWidth() * 38);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& current) {
    if (current.isValid()) emit NodeReached(model_->NodeOf(current));
  });
  connect(tree_, &QTreeView::activated, this, &CompareTree::Activated);
  setFocusProxy(tree_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeFilters());
  layout->addWidget(tree_, 1);
}

QWidget* CompareTree::MakeFilters() {
  auto* box = new QWidget;
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  int place = 0;
  for (const StateBox& each : kBoxes) {
    auto* check = new QCheckBox(QString::fromUtf8(each.caption));
    check->setObjectName(QString::fromLatin1(each.name));
    check->setChecked(true);
    states_[static_cast<std::size_t>(each.state)] = check;
    grid->addWidget(check, place / 2, place % 2);
    ++place;
    connect(check, &QCheckBox::toggled, this, &CompareTree::ApplyFilter);
  }
  filter_->setObjectName(QStringLiteral("txtVergleichFilter"));
  filter_->setAccessibleName(QStringLiteral("Filter der Änderungen"));
  filter_->setPlaceholderText(QStringLiteral("Nur Namen mit diesem Text"));
  filter_->setClearButtonEnabled(true);
  grid->addWidget(filter_, (place + 1) / 2, 0, 1, 2);
  connect(filter_, &QLineEdit::textChanged, this, &CompareTree::ApplyFilter);
  connect(filter_, &QLineEdit::returnPressed, this, [this] { tree_->setFocus(); });
  return box;
}

void CompareTree::SetOutline(std::vector<ChangeNode> outline) {
  model_->SetOutline(std::move(outline));
  ShowFilters();
  ApplyFilter();
}

void CompareTree::ShowFilters() {
  std::array<std::size_t, symbols::kChangeStateCount> counts{};
  const auto& outline = model_->Outline();
  for (std::size_t node = 0; node < outline.size(); ++node) {
    if (!HasChildren(outline, node)) ++counts[static_cast<std::size_t>(outline[node].state)];
  }
  for (const StateBox& box : kBoxes) {
    const auto state = static_cast<std::size_t>(box.state);
    states_[state]->setText(QStringLiteral("%1 (%2)").arg(QString::fromUtf8(box.caption)).arg(counts[state]));
    states_[state]->setEnabled(counts[state] > 0);
    states_[state]->setIcon(StateIcon(box.state, QApplication::palette()));
  }
}

void CompareTree::ApplyFilter() {
  const std::size_t before = tree_->currentIndex().isValid() ? model_->NumberOf(tree_->currentIndex()) : 0;
  symbols::OutlineFilter filter{.text = ToUtf8(filter_->text().trimmed())};
  for (const StateBox& box : kBoxes) {
    if (!states_[static_cast<std::size_t>(box.state)]->isChecked()) {
      filter.states = static_cast<std::uint8_t>(filter.states & ~symbols::Bit(box.state));
    }
  }
  model_->SetFilter(filter);
  ExpandTree();
  QModelIndex index = model_->IndexOf(before);
  // The first thing that has something to show.
  for (std::size_t node = 0; !index.isValid() && node < model_->Outline().size(); ++node) index = model_->IndexOf(node);
  if (index.isValid()) tree_->setCurrentIndex(index);
  emit Filtered();
}

void CompareTree::ExpandTree() {
  if (model_->Outline().size() <= kMostOpen) {
    tree_->expandAll();
  } else if (model_->rowCount() == 1) {
    tree_->expand(model_->index(0, 0));
  }
}

std::vector<ChangeNode> CompareTree::HeadsFrom(symbols::Index module, symbols::Index project, int direction) const {
  const auto& outline = model_->Outline();
  std::vector<ChangeNode> before, after;
  bool isFound = false;
  for (std::size_t node = 0; node < outline.size(); ++node) {
    if (!IsHead(outline[node]) || !model_->IsShown(node)) continue;
    if (outline[node].module == module && outline[node].project == project) {
      isFound = true;
    } else {
      (isFound ? after : before).push_back(outline[node]);
    }
  }
  // From nowhere all of them are ahead.
  if (direction > 0) return isFound ? after : before;
  return {before.rbegin(), before.rend()};
}

const ChangeNode* CompareTree::Select(symbols::Index module, symbols::Index project, symbols::Index routine) {
  using Kind = ChangeNode::Kind;
  const auto& outline = model_->Outline();
  std::size_t best = outline.size();
  for (std::size_t node = 0; node < outline.size(); ++node) {
    if (outline[node].module != module || outline[node].project != project || !model_->IsShown(node)) continue;
    const Kind kind = outline[node].kind;
    const bool isPiece =
        routine == kNone ? kind == Kind::kOutside : kind == Kind::kRoutine && outline[node].routine == routine;
    if (isPiece) best = node;
    if (IsHead(outline[node]) && best == outline.size()) best = node;
  }
  if (best == outline.size()) return nullptr;
  const QModelIndex index = model_->IndexOf(best);
  if (index == tree_->currentIndex()) return nullptr;
  tree_->setCurrentIndex(index);
  return &outline[best];
}

void CompareTree::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !IsEmpty()) ShowFilters();
}

}  // namespace quillmate::ui
