#pragma once

#include <QDialog>
#include <QLabel>
#include <QSpinBox>
#include <memory>

#include <quillmate/project/understanding.h>

#include "call_picture_view.h"
#include "table_file.h"

namespace quillmate::ui {

/// The picture of a routine's calls, callers at its left, what it calls at its right, in a window of its own. Deletes
/// itself when it is closed.
class CallPictureWindow : public QDialog {
  Q_OBJECT

 public:
  CallPictureWindow(QWidget* parent, const ListDesk& desk, std::shared_ptr<const project::Understanding> known,
                    symbols::SymbolId routine);

  /// Takes another routine into the middle.
  void ShowRoutine(symbols::SymbolId routine);

 signals:
  /// Its code is to be shown.
  void RoutineChosen(quillmate::symbols::SymbolId routine);

 private:
  QSpinBox* MakeLevels(const char* name, const char* label, QLayout& bar);
  QWidget* MakeBar();
  QWidget* MakeButtons();
  symbols::PictureRequest Request() const;
  void Draw();
  void Save();
  void Print();
  QString Name() const;

  ListDesk desk_;
  std::shared_ptr<const project::Understanding> known_;
  symbols::SymbolId routine_;
  QSpinBox* callers_ = nullptr;
  QSpinBox* callees_ = nullptr;
  CallPictureView* view_;
  QLabel* count_;
};

}  // namespace quillmate::ui
