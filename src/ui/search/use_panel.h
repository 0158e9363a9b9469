#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <string>

#include <quillmate/export/table.h>

#include "panel.h"
#include "use_model.h"

namespace quillmate::ui {

/// "Alle Verwendungen": the panel below the code that lists every use of a name by module and routine. A click or Enter
/// shows a use; Esc goes back to the code and closes the panel.
class UsePanel : public Panel {
  Q_OBJECT

 public:
  UsePanel();

  /// Shows the uses of a name, all unfolded.
  void ShowUses(std::shared_ptr<const project::Understanding> known, const QString& name,
                std::vector<symbols::Reference> uses);
  /// Drops the uses of a project that is no longer on screen.
  void Clear();
  /// Makes the use `steps` after the current one, once around, the current one. Null when there is none.
  const symbols::Reference* Step(int steps);
  /// What the filter leaves, a line or row each: module, routine, line, kind, certainty, text. UTF-8. Both are good in
  /// any thread, whatever the panel shows then.
  std::function<std::string()> AsText() const;
  output::Table AsTable() const;
  std::size_t Count() const { return model_->Count(); }

 signals:
  /// A use is to be shown.
  void UseChosen(const symbols::Reference& use);

 protected:
  bool TakeKey(QObject& control, int key) override;

 private:
  /// Uses with what they belong to.
  struct List {
    std::shared_ptr<const project::Understanding> known;
    std::vector<symbols::Reference> uses;
  };

  std::shared_ptr<const List> ShownUses() const;
  QWidget* BuildBar();
  void FillKinds();
  void ShowCount();
  void Unfold();
  void Choose(const QModelIndex& index);

  QString name_;
  QComboBox* kinds_;
  QLabel* message_;
  QTreeView* tree_;
  UseModel* model_;
};

}  // namespace quillmate::ui
