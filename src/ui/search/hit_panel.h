#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include <quillmate/project/session.h>

#include "hit_list.h"
#include "interaction.h"
#include "panel.h"
#include "search_field.h"

namespace quillmate::ui {

/// "Alle Treffer": the panel below the code that lists every hit in the project. A click or Enter shows the hit; Esc
/// goes back to the code and closes the panel.
class HitPanel : public Panel {
  Q_OBJECT

 public:
  /// Whole words are a switch of the window, which is in the panel, too.
  HitPanel(Interaction& interaction, project::Session& session, const SearchSwitches& switches);

  /// Shows the panel and, when there is a text to look for, its hits.
  void Open(const QString& text);
  /// Lists every hit of the text in the panel's field.
  void Search();
  /// Drops the hits of a project that is no longer on screen.
  void Clear();
  void SetWholeWord(bool on) { wholeWord_->setChecked(on); }
  output::Table AsTable() const { return hits_->AsTable(); }

 signals:
  /// The switch is to be changed.
  void WholeWordWanted();

 protected:
  bool TakeKey(QObject& control, int key) override;

 private:
  QWidget* BuildField();
  QWidget* BuildSwitches();
  void BuildList();
  QString Find(std::vector<navigation::ModuleHits>& hits);
  void ShowHit(const QModelIndex& index);

  Interaction& interaction_;
  project::Session& session_;
  const SearchSwitches& switches_;
  QLineEdit* text_ = nullptr;
  QCheckBox* isPattern_ = nullptr;
  QCheckBox* wholeWord_ = nullptr;
  QCheckBox* matchCase_ = nullptr;
  QComboBox* within_ = nullptr;
  QLabel* message_ = nullptr;
  QTreeView* list_ = nullptr;
  HitList* hits_ = nullptr;
};

}  // namespace quillmate::ui
