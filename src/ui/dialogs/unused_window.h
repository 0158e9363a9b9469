#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QTreeWidget>
#include <vector>

#include <quillmate/analysis/unused.h>
#include <quillmate/project/session.h>
#include <quillmate/startup/app_globals.h>

#include "interaction.h"
#include "read_files.h"

namespace quillmate::ui {

/// The window `frmUnbenutzt`: the routines of the loaded project that nothing calls, by module. A click shows a routine
/// in the main window. Deletes itself when it is closed.
class UnusedWindow : public QDialog {
 public:
  UnusedWindow(QWidget* parent, Interaction& interaction, const startup::AppGlobals& globals, project::Session& session,
               const ReadFiles& readFiles, std::vector<analysis::UnusedRoutine> routines);

 private:
  QWidget* MakeButtons();
  std::vector<analysis::UnusedRoutine> Shown() const;
  void Fill();
  void ShowRoutine(const QTreeWidgetItem& item);
  void Copy();
  void Save();

  Interaction& interaction_;
  const startup::AppGlobals& globals_;
  project::Session& session_;
  const ReadFiles& readFiles_;
  std::vector<analysis::UnusedRoutine> routines_;
  QLabel* lblErgebnis_;
  QCheckBox* chkNurSicher_;
  QTreeWidget* treUnbenutzt_;
};

}  // namespace quillmate::ui
