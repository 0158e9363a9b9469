#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QTreeWidget>
#include <vector>

#include "table_file.h"
#include "unused_classes.h"

namespace quillmate::ui {

/// The window `frmUnbenutzt`: the routines of the loaded project that nothing calls, by module. A click shows a routine
/// in the main window. Deletes itself when it is closed.
class UnusedWindow : public QDialog {
  Q_OBJECT

 public:
  UnusedWindow(QWidget* parent, const ListDesk& desk, std::vector<JudgedRoutine> routines);

 private:
  QWidget* MakeButtons();
  std::vector<JudgedRoutine> Shown() const;
  void Fill();
  void ShowRoutine(const QTreeWidgetItem& item);
  ListTexts Texts() const;

  ListDesk desk_;
  std::vector<JudgedRoutine> routines_;
  QLabel* lblErgebnis_;
  QCheckBox* chkNurSicher_;
  QTreeWidget* treUnbenutzt_;
};

}  // namespace quillmate::ui
