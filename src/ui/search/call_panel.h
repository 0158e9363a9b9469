#pragma once

#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QTreeView>

#include "call_model.h"

namespace quillmate::ui {

/// "Aufrufhierarchie": the panel that unfolds who calls a routine, or what it calls. A click or Enter shows the calling
/// line; Esc goes back to the code and closes the panel.
class CallPanel : public QDockWidget {
  Q_OBJECT

 public:
  CallPanel();

  void ShowRoutine(std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine);
  /// Drops what belongs to a project that is no longer on screen.
  void Clear();

 signals:
  void PlaceChosen(const project::TextStretch& place);
  /// The user goes back to the code.
  void Left();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fill();
  void Choose(const QModelIndex& index);

  std::shared_ptr<const project::Understanding> known_;
  symbols::SymbolId routine_ = symbols::kNone;
  QComboBox* direction_;
  QTreeView* tree_;
  CallModel* model_;
};

}  // namespace quillmate::ui
