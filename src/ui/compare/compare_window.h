#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <memory>
#include <optional>

#include "compare_job.h"
#include "compare_progress.h"
#include "compare_tree.h"
#include "compare_use_list.h"
#include "compare_view.h"
#include "table_file.h"

namespace quillmate::ui {

/// What a comparison window begins with.
struct CompareSetup {
  project::CompareRequest request;
  /// What the states are called.
  QString oldTitle, newTitle;
  /// The side that is the project on screen.
  std::optional<symbols::Side> loaded;
};

/// Two states of a project: the tree of what changed, both sides of it, and who uses it. The comparison is made in the
/// background; closing the window gives it up. Deletes itself when it is closed.
class CompareWindow : public QDialog {
  Q_OBJECT

 public:
  CompareWindow(QWidget* parent, const ListDesk& desk, CompareSetup setup);
  ~CompareWindow() override;

  /// The project on screen leaves: nothing of it is read any more when this returns, and no place leads there.
  void ForgetLoaded();
  /// Returns when no file is read any more.
  void FinishReading() { job_->FinishReading(); }
  bool IsDone() const { return job_->IsDone(); }

 signals:
  /// A place of the project on screen is to be shown there: module and line of its understanding.
  void PlaceWanted(symbols::Index module, std::uint32_t line);

 private:
  QWidget* MakeResult();
  QWidget* MakeSteps();
  QWidget* MakeButtons();
  void AddKey(const QKeySequence& key, void (CompareWindow::*run)());

  void Begin();
  void TakeResult();

  void ShowNode(const symbols::ChangeNode& node);
  /// Shows a module change, or the facts of a project.
  void ShowRows(symbols::Index module, symbols::Index project);
  void ShowLine(const symbols::ComparedLine& line);
  void ShowUses(const symbols::ChangeNode& node);
  void SwitchWhole();
  void Step(int direction);
  void NextChange() { Step(1); }
  void PreviousChange() { Step(-1); }
  void TellPlace();
  void SelectNodeAtCaret();
  void Again();
  void Swap();
  void WriteReport();
  void ShowProblems();
  void ShowInMain();
  std::optional<symbols::ComparedLine> LoadedLineAtCaret();

  ListDesk desk_;
  CompareSetup setup_;
  std::unique_ptr<CompareJob> job_;
  std::shared_ptr<const project::ComparedProjects> compared_;
  std::unique_ptr<symbols::ChangePlaces> places_;
  /// What is shown.
  symbols::Index module_ = symbols::kNone, project_ = symbols::kNone;
  bool following_ = false;

  QStackedWidget* pages_;
  CompareProgress* progress_;
  QLabel* summary_;
  QPushButton* problems_;
  CompareTree* tree_;
  CompareView* view_;
  CompareUseList* uses_;
  QCheckBox* whole_;
  QLabel* place_;
  QPushButton* previous_;
  QPushButton* next_;
  QPushButton* report_;
  QPushButton* toMain_;
  QPushButton* again_;
  QPushButton* swap_;
};

}  // namespace quillmate::ui
