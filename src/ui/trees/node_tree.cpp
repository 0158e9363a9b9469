#include "node_tree.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QToolTip>

#include "project_tree_model.h"

namespace quillmate::ui {
namespace {

void Invert(QPalette& palette) {
  palette.setColor(QPalette::Text, Qt::yellow);
  palette.setColor(QPalette::Highlight, Qt::black);
  palette.setColor(QPalette::HighlightedText, Qt::yellow);
}

/// A name that the column cuts off is shown whole under the mouse.
class NameDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    const bool isCut = sizeHint(option, index).width() > option.rect.width();
    if (event->type() != QEvent::ToolTip || !isCut) return QStyledItemDelegate::helpEvent(event, view, option, index);
    QString text = index.data(Qt::DisplayRole).toString();
    const QString own = index.data(Qt::ToolTipRole).toString();
    if (!own.isEmpty()) text += QLatin1Char('\n') + own;
    QToolTip::showText(event->globalPos(), text, view->viewport(), option.rect);
    return true;
  }
};

/// Paints the marked node inverted, whether it is selected or not.
class MarkDelegate : public NameDelegate {
 public:
  using NameDelegate::NameDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (!index.data(kMarkedRole).toBool()) return;
    option->backgroundBrush = Qt::black;
    Invert(option->palette);
  }
};

/// The style makes the frame of a box from the window's colour, darkened: on dark ground it vanishes.
class TickDelegate : public NameDelegate {
 public:
  using NameDelegate::NameDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isDark = option->palette.color(QPalette::Base).lightness() < 128;
    if (isDark) option->palette.setColor(QPalette::Window, QColor(0xa8, 0xa8, 0xa8));
  }
};

}  // namespace

TickTree::TickTree(QWidget* parent) : QTreeView(parent) { setItemDelegate(new TickDelegate(this)); }

void SetUpTree(QTreeView& tree, const QString& name) {
  tree.setObjectName(name);
  tree.setHeaderHidden(true);
  tree.setUniformRowHeights(true);
  tree.setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree.setContextMenuPolicy(Qt::CustomContextMenu);
  tree.setMinimumWidth(1);
  // Never wider than the tree either, as the last column may be: names that it cuts off are known to be cut.
  tree.header()->setStretchLastSection(false);
  tree.header()->setSectionResizeMode(QHeaderView::Stretch);
}

NodeTree::NodeTree(QWidget* parent) : QTreeView(parent) {
  setItemDelegate(new MarkDelegate(this));
  connect(this, &QTreeView::clicked, this, &NodeTree::NodeChosen);
}

void NodeTree::keyboardSearch(const QString&) {}

void NodeTree::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  if (!index.data(kMarkedRole).toBool()) {
    QTreeView::drawRow(painter, option, index);
    return;
  }
  // In front of the inverted name the row stays plain, selected or not, so that its arrow can be seen.
  QStyleOptionViewItem plain = option;
  plain.palette.setColor(QPalette::Highlight, plain.palette.color(QPalette::Base));
  plain.palette.setColor(QPalette::HighlightedText, plain.palette.color(QPalette::Text));
  QTreeView::drawRow(painter, plain, index);
}

void NodeTree::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool isTyped = !event->text().isEmpty() && event->text().front().isPrint();
  if (!isEnter && !isTyped) {
    QTreeView::keyPressEvent(event);
    return;
  }
  event->accept();
  if (isEnter && currentIndex().isValid()) emit NodeChosen(currentIndex());
}

}  // namespace quillmate::ui
