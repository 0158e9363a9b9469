#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <QRadioButton>
#include <vector>

namespace quillmate::ui {

/// What is handed over of a project, and as what.
struct HandOverChoice {
  bool site = true;
  bool pdf = true;
  bool lists = true;
  bool project = true;
  /// A zip file in place of a folder.
  bool zipped = false;
};

/// Asks for it. Deletes itself when it is closed.
class HandOverDialog : public QDialog {
  Q_OBJECT

 public:
  HandOverDialog(QWidget* parent, const HandOverChoice& preset);

 signals:
  void Chosen(const quillmate::ui::HandOverChoice& choice);

 private:
  QRadioButton* asFolder_;
  QRadioButton* asZip_;
  /// In the order of the members of HandOverChoice.
  std::vector<QCheckBox*> parts_;
};

}  // namespace quillmate::ui
