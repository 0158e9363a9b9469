#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>

namespace quillmate::ui {

enum class PrintedWhat { kSelection, kRoutine, kModule, kProject };

struct PrintChoice {
  PrintedWhat what = PrintedWhat::kModule;
  bool lineNumbers = true;
  bool colours = true;
};

/// Asks what of the code is printed, and how. Deletes itself when it is closed.
class PrintChoiceDialog : public QDialog {
  Q_OBJECT

 public:
  /// `action`: caption of the button that goes on. What is not there (no selection, no routine) can't be chosen.
  PrintChoiceDialog(QWidget* parent, const QString& title, const QString& action, const PrintChoice& preset,
                    bool hasSelection, bool hasRoutine);

 signals:
  void Chosen(const PrintChoice& choice);

 private:
  QButtonGroup* what_;
  QCheckBox* lineNumbers_;
  QCheckBox* colours_;
};

}  // namespace quillmate::ui
