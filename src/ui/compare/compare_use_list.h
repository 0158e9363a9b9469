#pragma once

#include <QLabel>
#include <QTreeWidget>
#include <vector>

#include <quillmate/symbols/compare_outline.h>

namespace quillmate::ui {

/// Who uses what has changed: one row for each line, with what became of the routine around it.
class CompareUseList : public QWidget {
  Q_OBJECT

 public:
  explicit CompareUseList(QWidget* parent = nullptr);

  /// `name`: what is used, and in which state.
  void Show(const QString& name, std::vector<symbols::ComparedUse> uses);
  void Clear() { Show({}, {}); }

 signals:
  /// A row was clicked, or chosen by a key.
  void LineChosen(const symbols::ComparedLine& line);

 private:
  void Choose(QTreeWidgetItem* item);

  QLabel* title_;
  QTreeWidget* list_;
  std::vector<symbols::ComparedUse> uses_;
};

}  // namespace quillmate::ui
