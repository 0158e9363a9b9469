#pragma once

#include <QToolButton>
#include <QWidget>

namespace quillmate::ui {

/// The line above the code that tells where it is: project, module and routine, each of which leads to its beginning.
class PlaceBar : public QWidget {
  Q_OBJECT

 public:
  PlaceBar();

  /// An empty routine stands for the declarations of the module.
  void Show(const QString& project, const QString& module, const QString& routine);

 signals:
  void ProjectClicked();
  void ModuleClicked();
  void RoutineClicked();

 private:
  QToolButton* project_;
  QToolButton* module_;
  QToolButton* routine_;
};

}  // namespace quillmate::ui
