#pragma once

#include <QLineEdit>
#include <vector>

namespace quillmate::ui {

class Shell;

/// The line above the project tree: a few letters, and only the modules and routines that have them are left; Enter
/// goes to the first. While it is empty the tree is as it always was.
class TreeFilter : public QLineEdit {
 public:
  explicit TreeFilter(Shell& shell);

  /// Takes the filter away without touching what is unfolded.
  void Clear();
  /// Lists routines in the order of the source instead of that of their names.
  void OrderBySource(bool on);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Apply(const QString& text);
  void StoreUnfolded();
  void Unfold();
  void Go();

  Shell& shell_;
  /// Nodes of the modules that were unfolded before the first letter was typed.
  std::vector<int> unfolded_;
  bool isFiltering_ = false;
};

/// Puts the project tree with the line above it into the stack of trees.
TreeFilter* AddProjectTree(Shell& shell);

}  // namespace quillmate::ui
