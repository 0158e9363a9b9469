#include "source_panel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quillmate::ui {
namespace {

QString Counted(std::size_t count, const char* one, const char* many) {
  return QString::number(count) + QLatin1Char(' ') + QString::fromUtf8(count == 1 ? one : many);
}

QPushButton* AddButton(QHBoxLayout& row, const char* name, const char* caption, const char* tip) {
  auto* button = new QPushButton(QString::fromUtf8(caption));
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(QString::fromUtf8(tip));
  row.addWidget(button);
  return button;
}

}  // namespace

SourcePanel::SourcePanel(HostTreeModel& model)
    : model_(model),
      shown_(new QSortFilterProxyModel(this)),
      line_(new QLineEdit),
      tree_(new TickTree),
      count_(new QLabel) {
  line_->setObjectName(QStringLiteral("txtQuellenFilter"));
  line_->setAccessibleName(QStringLiteral("Quellen und Module filtern"));
  line_->setPlaceholderText(QStringLiteral("Projekt oder Modul"));
  line_->setToolTip(QStringLiteral("Zeigt nur Projekte und Module mit diesem Text im Namen"));
  line_->setClearButtonEnabled(true);
  line_->setMinimumWidth(1);
  shown_->setSourceModel(&model_);
  shown_->setRecursiveFilteringEnabled(true);
  shown_->setAutoAcceptChildRows(true);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  SetUpTree(*tree_, QStringLiteral("treApp"));
  tree_->setModel(shown_);
  count_->setObjectName(QStringLiteral("lblQuellen"));
  count_->setWordWrap(true);
  count_->setMinimumWidth(1);

  auto* buttons = new QHBoxLayout;
  all_ = AddButton(*buttons, "cmdAlle", "Alle", "Kreuzt alles an, was zu sehen ist");
  none_ = AddButton(*buttons, "cmdKeine", "Keine", "Nimmt die Kreuze von allem, was zu sehen ist");
  read_ =
      AddButton(*buttons, "cmdAlleLesen", "Alle lesen", "Kreuzt alles an, was zu sehen ist, und liest den Code ein");
  all_->setAccessibleName(QStringLiteral("Alle ankreuzen"));
  none_->setAccessibleName(QStringLiteral("Keine ankreuzen"));
  for (QPushButton* button : {all_, none_, read_}) {
    button->setMinimumWidth(1);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(line_);
  layout->addWidget(tree_);
  layout->addWidget(count_);
  layout->addLayout(buttons);

  connect(line_, &QLineEdit::textChanged, this, [this](const QString& text) {
    shown_->setFilterFixedString(text.trimmed());
    Refresh();
  });
  connect(line_, &QLineEdit::returnPressed, tree_, qOverload<>(&QWidget::setFocus));
  connect(all_, &QPushButton::clicked, this, [this] { TickShown(true); });
  connect(none_, &QPushButton::clicked, this, [this] { TickShown(false); });
  connect(read_, &QPushButton::clicked, this, &SourcePanel::ReadAllWanted);
  connect(&model_, &QAbstractItemModel::dataChanged, this, &SourcePanel::Count);
  connect(tree_, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
    tree_->setCurrentIndex(tree_->indexAt(place));
    emit MenuWanted(tree_->viewport()->mapToGlobal(place));
  });
  Count();
}

void SourcePanel::SetCurrent(const QModelIndex& node) {
  const QModelIndex shown = shown_->mapFromSource(node);
  tree_->setCurrentIndex(shown);
  tree_->scrollTo(shown, QAbstractItemView::PositionAtTop);
}

void SourcePanel::TickShown(bool ticked) {
  const Qt::CheckState state = ticked ? Qt::Checked : Qt::Unchecked;
  isTicking_ = true;
  for (int row = 0; row < shown_->rowCount(); ++row) {
    const QModelIndex project = shown_->index(row, 0);
    const bool isWhole = shown_->rowCount(project) == model_.rowCount(shown_->mapToSource(project));
    if (isWhole) {
      shown_->setData(project, state, Qt::CheckStateRole);
      continue;
    }
    for (int module = 0; module < shown_->rowCount(project); ++module) {
      shown_->setData(shown_->index(module, 0, project), state, Qt::CheckStateRole);
    }
  }
  isTicking_ = false;
  Count();
}

void SourcePanel::Refresh() {
  tree_->expandAll();
  Count();
}

void SourcePanel::Count() {
  if (isTicking_) return;
  const host::HostTree& tree = model_.Tree();
  std::size_t modules = 0;
  for (const host::HostProjectNode& project : tree.projects) modules += project.modules.size();
  const std::size_t unread = static_cast<std::size_t>(model_.rowCount()) - tree.projects.size();
  QString text = QStringLiteral("%1, %2, %3 angekreuzt")
                     .arg(Counted(tree.projects.size(), "Projekt", "Projekte"), Counted(modules, "Modul", "Module"))
                     .arg(tree.CheckedModules());
  if (unread > 0) text += QStringLiteral("; %1 nicht lesbar").arg(unread);
  if (model_.rowCount() == 0) text = QStringLiteral("Noch keine Quellen");
  if (model_.rowCount() > 0 && shown_->rowCount() == 0) text = QStringLiteral("Nichts passt zum Filter: ") + text;
  count_->setText(text);
  for (QPushButton* button : {all_, none_, read_}) button->setEnabled(modules > 0);
}

}  // namespace quillmate::ui
