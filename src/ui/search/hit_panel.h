#pragma once

#include <QCheckBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include "hit_list.h"

namespace quillmate::ui {

class Shell;

/// "Alle Treffer": the panel below the code that lists every hit in the project. A click or Enter shows the hit; Esc
/// goes back to the code and closes the panel.
class HitPanel : public QDockWidget {
 public:
  explicit HitPanel(Shell& shell);

  /// Shows the panel and, when there is a text to look for, its hits.
  void Open(const QString& text);
  /// Lists every hit of the text in the panel's field.
  void Search();
  /// Drops the hits of a project that is no longer on screen.
  void Clear();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildField();
  void BuildList();
  QString Find(std::vector<navigation::ModuleHits>& hits);
  void ShowHit(const QModelIndex& index);
  void Leave();

  Shell& shell_;
  QLineEdit* text_ = nullptr;
  QCheckBox* isPattern_ = nullptr;
  QLabel* message_ = nullptr;
  QTreeView* list_ = nullptr;
  HitList* hits_ = nullptr;
};

}  // namespace quillmate::ui
