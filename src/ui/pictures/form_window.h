#pragma once

#include <QDialog>
#include <QLabel>
#include <QTreeWidget>
#include <memory>

#include <quillmate/project/understanding.h>

#include "form_sketch.h"
#include "table_file.h"

namespace quillmate::ui {

/// A form's controls with their events and handlers as a list, and as a sketch where places are known. A click leads to
/// the handlers. Deletes itself when it is closed.
class FormWindow : public QDialog {
  Q_OBJECT

 public:
  FormWindow(QWidget* parent, const ListDesk& desk, std::shared_ptr<const project::Understanding> known,
             project::FormPicture form);

 signals:
  void RoutineChosen(quillmate::symbols::SymbolId routine);

 private:
  void BuildList();
  QWidget* MakeButtons();
  void AddEvents(QTreeWidgetItem& item, const std::vector<project::FormEvent>& events);
  QString CountText() const;
  QString HandlerText(const project::FormEvent& event) const;
  void Choose(const QTreeWidgetItem* item);
  /// The first handler of a control.
  void ChooseControl(int control);
  output::Table AsTable() const;

  ListDesk desk_;
  std::shared_ptr<const project::Understanding> known_;
  project::FormPicture form_;
  FormSketch* sketch_ = nullptr;
  QTreeWidget* list_;
  std::vector<QTreeWidgetItem*> items_;
};

}  // namespace quillmate::ui
