#include "call_panel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <utility>

#include "symbol_text.h"

namespace quillmate::ui {
namespace {

/// Widths of the columns in characters; the last one takes what is left.
constexpr int kColumnWidths[] = {44, 24, 60};

}  // namespace

CallPanel::CallPanel()
    : Panel("fraHierarchie", QStringLiteral("Aufrufhierarchie")),
      direction_(new QComboBox),
      tree_(new QTreeView),
      model_(new CallModel(this)) {
  direction_->setObjectName(QStringLiteral("cboRichtung"));
  direction_->setAccessibleName(QStringLiteral("Richtung der Aufrufe"));
  direction_->addItems({QStringLiteral("Wer ruft auf?"), QStringLiteral("Was wird aufgerufen?")});
  tree_->setObjectName(QStringLiteral("treHierarchie"));
  tree_->setAccessibleName(QStringLiteral("Aufrufhierarchie"));
  tree_->setUniformRowHeights(true);
  tree_->setAllColumnsShowFocus(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setModel(model_);
  const int character = tree_->fontMetrics().averageCharWidth();
  for (int column = 0; column < CallModel::kCertainty; ++column) {
    tree_->header()->resizeSection(column, kColumnWidths[column] * character);
  }
  Watch(*tree_);
  Watch(*direction_);
  connect(direction_, &QComboBox::currentIndexChanged, this, &CallPanel::Unfold);
  connect(tree_, &QTreeView::clicked, this, &CallPanel::Choose);
  Fill({BuildBar(), tree_});
}

QWidget* CallPanel::BuildBar() {
  auto* bar = new QWidget;
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(direction_);
  layout->addStretch();
  auto* picture = new QPushButton(QStringLiteral("Als &Bild"));
  picture->setObjectName(QStringLiteral("cmdHierarchieBild"));
  connect(picture, &QPushButton::clicked, this, [this] {
    const symbols::SymbolId routine = model_->RoutineOf(tree_->currentIndex());
    if (known_ != nullptr) emit PictureWanted(routine == symbols::kNone ? routine_ : routine);
  });
  layout->addWidget(picture);
  return bar;
}

void CallPanel::ShowRoutine(std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine) {
  known_ = std::move(known);
  routine_ = routine;
  setWindowTitle(QStringLiteral("Aufrufhierarchie: ") + QualifiedName(known_->Index(), routine));
  Unfold();
  show();
  raise();
  tree_->setFocus();
}

void CallPanel::Unfold() {
  if (known_ == nullptr) return;
  const bool callers = direction_->currentIndex() == 0;
  model_->Show(known_, routine_, callers ? symbols::CallDirection::kCallers : symbols::CallDirection::kCallees);
  const QModelIndex root = model_->index(0, 0);
  model_->fetchMore(root);
  tree_->expand(root);
  tree_->setCurrentIndex(root);
}

void CallPanel::Clear() {
  known_.reset();
  model_->Show(nullptr, symbols::kNone, symbols::CallDirection::kCallers);
  setWindowTitle(QStringLiteral("Aufrufhierarchie"));
  hide();
}

void CallPanel::Choose(const QModelIndex& index) {
  const auto place = model_->PlaceOf(index);
  if (place) emit PlaceChosen(*place);
}

bool CallPanel::TakeKey(QObject& control, int key) {
  if (&control != tree_ || !IsEnter(key)) return false;
  Choose(tree_->currentIndex());
  return true;
}

}  // namespace quillmate::ui
