#pragma once

#include <QTreeView>

namespace quillmate::ui {

/// A tree of modules and routines. A mouse click or Enter shows a node; every other key only moves the highlight, and
/// typed letters do nothing. The node of the module on screen stands out yellow on black.
class NodeTree : public QTreeView {
  Q_OBJECT

 public:
  explicit NodeTree(QWidget* parent = nullptr);

  void keyboardSearch(const QString& search) override;

 signals:
  /// A node is to be shown.
  void NodeChosen(const QModelIndex& index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// A tree whose nodes have check boxes. On a dark desktop the empty boxes get a frame that can be seen.
class TickTree : public QTreeView {
 public:
  explicit TickTree(QWidget* parent = nullptr);
};

/// What all trees of the window have in common.
void SetUpTree(QTreeView& tree, const QString& name);

}  // namespace quillmate::ui
