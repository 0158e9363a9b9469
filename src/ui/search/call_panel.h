#pragma once

#include <QComboBox>
#include <QLabel>
#include <QTreeView>

#include "call_model.h"
#include "panel.h"

namespace quillmate::ui {

/// "Aufrufhierarchie": the panel that unfolds who calls a routine, or what it calls. A click or Enter shows the calling
/// line; Esc goes back to the code and closes the panel.
class CallPanel : public Panel {
  Q_OBJECT

 public:
  CallPanel();

  void ShowRoutine(std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine);
  /// Drops what belongs to a project that is no longer on screen.
  void Clear();

 signals:
  void PlaceChosen(const project::TextStretch& place);
  void PictureWanted(quillmate::symbols::SymbolId routine);

 protected:
  bool TakeKey(QObject& control, int key) override;

 private:
  QWidget* BuildBar();
  void Unfold();
  void Choose(const QModelIndex& index);

  std::shared_ptr<const project::Understanding> known_;
  symbols::SymbolId routine_ = symbols::kNone;
  QComboBox* direction_;
  QTreeView* tree_;
  CallModel* model_;
};

}  // namespace quillmate::ui
