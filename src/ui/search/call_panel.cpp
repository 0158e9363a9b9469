#include "call_panel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <utility>

#include "symbol_text.h"

namespace quillmate::ui {
namespace {

/// Widths of the columns in characters; the last one takes what is left.
constexpr int kColumnWidths[] = {44, 24, 60};

}  // namespace

CallPanel::CallPanel()
    : QDockWidget(QStringLiteral("Aufrufhierarchie")),
      direction_(new QComboBox),
      tree_(new QTreeView),
      model_(new CallModel(this)) {
  setObjectName(QStringLiteral("fraHierarchie"));
  setFeatures(QDockWidget::DockWidgetClosable);
  setAllowedAreas(Qt::BottomDockWidgetArea);
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
  tree_->installEventFilter(this);
  direction_->installEventFilter(this);
  connect(direction_, &QComboBox::currentIndexChanged, this, &CallPanel::Fill);
  connect(tree_, &QTreeView::clicked, this, &CallPanel::Choose);
  auto* inside = new QWidget;
  auto* layout = new QVBoxLayout(inside);
  layout->setContentsMargins(3, 3, 3, 3);
  auto* bar = new QHBoxLayout;
  bar->addWidget(direction_);
  bar->addStretch();
  layout->addLayout(bar);
  layout->addWidget(tree_);
  setWidget(inside);
}

void CallPanel::ShowRoutine(std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine) {
  known_ = std::move(known);
  routine_ = routine;
  setWindowTitle(QStringLiteral("Aufrufhierarchie: ") + QualifiedName(known_->Index(), routine));
  Fill();
  show();
  raise();
  tree_->setFocus();
}

void CallPanel::Fill() {
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

bool CallPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDockWidget::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Escape) {
    hide();
    emit Left();
    return true;
  }
  if (watched == tree_ && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
    Choose(tree_->currentIndex());
    return true;
  }
  return QDockWidget::eventFilter(watched, event);
}

}  // namespace quillmate::ui
