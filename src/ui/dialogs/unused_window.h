#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QTreeWidget>
#include <vector>

#include <quillmate/analysis/unused.h>

namespace quillmate::ui {

class Shell;

/// The window `frmUnbenutzt`: the routines of the loaded project that nothing calls, by module. A click shows a routine
/// in the main window. Deletes itself when it is closed.
class UnusedWindow : public QDialog {
 public:
  UnusedWindow(Shell& shell, std::vector<analysis::UnusedRoutine> routines);

 private:
  QWidget* MakeButtons();
  std::vector<analysis::UnusedRoutine> Shown() const;
  void Fill();
  void ShowRoutine(const QTreeWidgetItem& item);
  void Copy();
  void Save();

  Shell& shell_;
  std::vector<analysis::UnusedRoutine> routines_;
  QLabel* lblErgebnis_;
  QCheckBox* chkNurSicher_;
  QTreeWidget* treUnbenutzt_;
};

/// Closes the window, if it is there: its list belongs to the project that is being left.
void CloseUnusedWindow(Shell& shell);

}  // namespace quillmate::ui
