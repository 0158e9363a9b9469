#include "note_panel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

namespace quillmate::ui {
namespace {

/// Widths of the columns in characters; the last one takes what is left.
constexpr int kColumnWidths[] = {44, 8, 20};

}  // namespace

NotePanel::NotePanel() : QDockWidget(QStringLiteral("Notizen und Lesezeichen")), list_(new QTreeWidget) {
  setObjectName(QStringLiteral("fraNotizen"));
  setFeatures(QDockWidget::DockWidgetClosable);
  setAllowedAreas(Qt::BottomDockWidgetArea);
  list_->setObjectName(QStringLiteral("lstNotizen"));
  list_->setAccessibleName(QStringLiteral("Notizen und Lesezeichen"));
  list_->setHeaderLabels(
      {QStringLiteral("Ort"), QStringLiteral("Zeile"), QStringLiteral("Art"), QStringLiteral("Text")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  const int character = list_->fontMetrics().averageCharWidth();
  for (int column = 0; column < 3; ++column) list_->header()->resizeSection(column, kColumnWidths[column] * character);
  list_->installEventFilter(this);
  connect(list_, &QTreeWidget::itemClicked, this,
          [this](QTreeWidgetItem* item) { emit Chosen(list_->indexOfTopLevelItem(item)); });
  setWidget(list_);
}

void NotePanel::ShowRows(const std::vector<NoteRow>& rows) {
  const int current = list_->currentIndex().row();
  list_->clear();
  QList<QTreeWidgetItem*> items;
  for (const NoteRow& row : rows) {
    QStringList kinds;
    if (row.isNote) kinds << QStringLiteral("Notiz");
    if (row.isBookmark) kinds << QStringLiteral("Lesezeichen");
    const QString line = row.line > 0 ? QString::number(row.line) : QString();
    auto* item = new QTreeWidgetItem({row.place, line, kinds.join(QStringLiteral(", ")), row.text.simplified()});
    for (int column = 0; column < 4; ++column) item->setToolTip(column, row.hint);
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    items.append(item);
  }
  if (items.isEmpty()) {
    const QString why = QStringLiteral("Noch keine: Lesen – Notiz ... (Strg+Umschalt+N) oder Lesezeichen (Strg+F2)");
    auto* item = new QTreeWidgetItem({why});
    item->setFirstColumnSpanned(true);
    item->setFlags(Qt::NoItemFlags);
    items.append(item);
  }
  list_->addTopLevelItems(items);
  if (rows.empty()) {
    list_->setFirstColumnSpanned(0, {}, true);
  } else {
    list_->setCurrentItem(list_->topLevelItem(std::clamp(current, 0, static_cast<int>(rows.size()) - 1)));
  }
}

bool NotePanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDockWidget::eventFilter(watched, event);
  const int row = list_->currentIndex().row();
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
      hide();
      emit Left();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (row >= 0) emit Chosen(row);
      return true;
    case Qt::Key_Delete:
      if (row >= 0) emit RemoveWanted(row);
      return true;
    default:
      return QDockWidget::eventFilter(watched, event);
  }
}

}  // namespace quillmate::ui
