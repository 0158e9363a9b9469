#include "compare_use_list.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QVBoxLayout>
#include <utility>

#include <quillmate/symbols/kinds.h>

#include "compare_colours.h"
#include "cut_label.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// A use is looked through, not read: more than this says nothing.
constexpr std::size_t kMostRows = 10'000;
constexpr std::size_t kMostText = 300;

}  // namespace

CompareUseList::CompareUseList(QWidget* parent) : QWidget(parent), title_(new CutLabel), list_(new QTreeWidget) {
  title_->setObjectName(QStringLiteral("lblVerwendungen"));
  list_->setObjectName(QStringLiteral("lstVergleichVerwendungen"));
  list_->setAccessibleName(QStringLiteral("Verwendungen des Geänderten"));
  list_->setRootIsDecorated(false);
  list_->setMinimumHeight(4 * list_->fontMetrics().height());
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setHeaderLabels({QStringLiteral("Stelle"), QStringLiteral("Zeile"), QStringLiteral("Code"),
                          QStringLiteral("Routine dort"), QStringLiteral("Gewissheit")});
  const int character = list_->fontMetrics().averageCharWidth();
  for (const auto& [column, width] : {std::pair(0, 30), std::pair(1, 8), std::pair(2, 50), std::pair(3, 14)}) {
    list_->header()->resizeSection(column, width * character);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(title_);
  layout->addWidget(list_, 1);
  connect(list_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { Choose(item); });
  connect(list_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { Choose(item); });
  Clear();
}

void CompareUseList::Show(const QString& name, std::vector<symbols::ComparedUse> uses) {
  uses_ = std::move(uses);
  list_->clear();
  title_->setText(name.isEmpty()  ? QStringLiteral("Verwendungen")
                  : uses_.empty() ? QStringLiteral("%1 wird nirgends verwendet").arg(name)
                                  : QStringLiteral("Verwendungen von %1: %2").arg(name).arg(uses_.size()));
  list_->setEnabled(!uses_.empty());
  if (uses_.size() > kMostRows) uses_.resize(kMostRows);
  QList<QTreeWidgetItem*> items;
  for (const symbols::ComparedUse& use : uses_) {
    const bool isCode = use.line.module != symbols::kNone;
    const bool differs = use.state != symbols::ChangeState::kSame;
    const QString text = FromUtf8(std::string_view(use.text).substr(0, kMostText));
    auto* item = new QTreeWidgetItem({isCode ? FromUtf8(use.routine) : QStringLiteral("Außerhalb des Codes"),
                                      isCode ? QString::number(use.line.line) : QString(), text,
                                      differs ? FromUtf8(symbols::GermanWord(use.state)) : QString(),
                                      FromUtf8(symbols::GermanWord(use.certainty))});
    if (differs) item->setIcon(3, StateIcon(use.state, QGuiApplication::palette()));
    item->setToolTip(2, text);
    items.append(item);
  }
  list_->addTopLevelItems(items);
}

void CompareUseList::Choose(QTreeWidgetItem* item) {
  const auto row = static_cast<std::size_t>(list_->indexOfTopLevelItem(item));
  if (row < uses_.size() && uses_[row].line.module != symbols::kNone) emit LineChosen(uses_[row].line);
}

}  // namespace quillmate::ui
