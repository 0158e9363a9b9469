#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include "module_matrix.h"
#include "table_file.h"

namespace quillmate::ui {

/// "Abhängigkeiten": which module uses which others, and how often, as a matrix. A click or Enter lists the uses of a
/// cell. Deletes itself when it is closed.
class MatrixWindow : public QDialog {
  Q_OBJECT

 public:
  MatrixWindow(QWidget* parent, const ListDesk& desk, std::shared_ptr<const project::Understanding> known);

 signals:
  /// The uses of one module in another are to be listed.
  void UsesWanted(quillmate::symbols::Index from, quillmate::symbols::Index to);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildTable();
  QWidget* MakeFilter();
  QWidget* MakeButtons();
  QString CountText() const;
  void Filter();
  void Choose(const QModelIndex& index);

  ListDesk desk_;
  ModuleMatrix* matrix_;
  QLineEdit* filter_;
  QCheckBox* cyclesOnly_;
  QLabel* count_;
  QTableView* table_;
  QLabel* cell_;
};

}  // namespace quillmate::ui
