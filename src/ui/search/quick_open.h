#pragma once

#include <QAbstractListModel>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <memory>
#include <vector>

#include "name_matcher.h"

namespace quillmate::ui {

/// "Gehe zu Name": one field over everything that the project declares, and what fits below it. Enter or a click goes
/// there, Esc closes. Shown again, it begins with what was chosen last.
class QuickOpen : public QDialog {
  Q_OBJECT

 public:
  explicit QuickOpen(QWidget* parent);

  /// Opens the window empty. Names are those of the understanding.
  void Open(std::shared_ptr<const project::Understanding> known);
  /// The project goes: nothing of it is kept.
  void Forget();

 signals:
  void Chosen(symbols::SymbolId symbol);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Names;

  void Search();
  void Choose(const QModelIndex& index);

  QLineEdit* text_;
  QTreeView* list_;
  QLabel* message_;
  Names* names_;
  std::unique_ptr<NameMatcher> matcher_;
  /// The last one first.
  std::vector<symbols::SymbolId> recent_;
};

}  // namespace quillmate::ui
