#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QTreeView>
#include <QWidget>
#include <array>
#include <vector>

#include "compare_tree_model.h"

namespace quillmate::ui {

/// What changed: a tree, and above it the filters that leave parts of it out.
class CompareTree : public QWidget {
  Q_OBJECT

 public:
  CompareTree();

  /// Shows it filtered, and reaches the first node that has something to show.
  void SetOutline(std::vector<symbols::ChangeNode> outline);
  void Clear() { model_->SetOutline({}); }
  bool IsEmpty() const { return model_->Outline().empty(); }

  /// The modules and projects shown after one of them, or before it (direction -1), the nearest first; all of them when
  /// it is not shown itself.
  std::vector<symbols::ChangeNode> HeadsFrom(symbols::Index module, symbols::Index project, int direction) const;
  /// Makes the node of a routine the current one, or of what is outside of routines (kNone), else that of its module
  /// or project. The node, valid until the outline changes; null where it was the current one already or none is shown.
  const symbols::ChangeNode* Select(symbols::Index module, symbols::Index project, symbols::Index routine);

 signals:
  /// A node has become the current one.
  void NodeReached(const symbols::ChangeNode& node);
  /// Enter, or a double click.
  void Activated();
  /// Other nodes may be shown now.
  void Filtered();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeFilters();
  void ShowFilters();
  void ApplyFilter();
  void ExpandTree();

  std::array<QCheckBox*, symbols::kChangeStateCount> states_{};
  QLineEdit* filter_;
  CompareTreeModel* model_;
  QTreeView* tree_;
};

}  // namespace quillmate::ui
