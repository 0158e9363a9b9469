#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include "list_model.h"
#include "table_file.h"

namespace quillmate::ui {

/// A list of the menu "Analyse" in a window of its own: sorted by a click on a column, filtered by what is typed above
/// it. Its rows are found in the background until it is closed. A click on a row shows its place in the main window.
/// Deletes itself when it is closed.
class ListWindow : public QDialog {
  Q_OBJECT

 public:
  ListWindow(QWidget* parent, const ListDesk& desk, ListSource source);

 signals:
  void PlaceChosen(const project::TextStretch& place);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* MakeButtons();
  void Search();
  void MakeKeys();
  void ShowCount();
  void Choose(const QModelIndex& index);
  ListTexts Texts() const;

  ListDesk desk_;
  ListModel* model_;
  QLineEdit* filter_;
  QLabel* count_;
  QTreeView* list_;
  QPushButton* copy_ = nullptr;
  QPushButton* save_ = nullptr;
  bool isFound_ = false;
  /// Why there are no rows.
  QString error_;
};

}  // namespace quillmate::ui
