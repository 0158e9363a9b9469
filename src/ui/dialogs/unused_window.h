#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <atomic>
#include <functional>
#include <vector>

#include "table_file.h"
#include "unused_model.h"

namespace quillmate::ui {

/// Finds the routines, which may take seconds in a large project; in any thread.
using FindUnused = std::function<std::vector<JudgedRoutine>(const std::atomic<bool>& cancelled)>;

/// The window `frmUnbenutzt`: the routines of the loaded project that nothing calls, by module. They are found in the
/// background until it is closed. A click shows a routine in the main window. Deletes itself when it is closed.
class UnusedWindow : public QDialog {
  Q_OBJECT

 public:
  UnusedWindow(QWidget* parent, const ListDesk& desk, FindUnused find);

  /// The project's files may be replaced: returns when they are not read any more.
  static void FinishReading(QWidget& parent);

 private:
  QWidget* MakeButtons();
  void Search(FindUnused find);
  void ShowRoutine(const QModelIndex& index);
  ListTexts Texts() const;

  ListDesk desk_;
  UnusedModel* model_;
  QLabel* lblErgebnis_;
  QCheckBox* chkNurSicher_;
  QTreeView* treUnbenutzt_;
  QPushButton* copy_ = nullptr;
  QPushButton* save_ = nullptr;
};

}  // namespace quillmate::ui
