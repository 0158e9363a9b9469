#pragma once

#include <QLineEdit>

#include <quillmate/navigation/search.h>

namespace quillmate::ui {

/// What the search commands obey besides the text.
struct SearchSwitches {
  bool wholeWord = false;
  /// In the whole project instead of the visible module.
  bool project = false;
};

/// The search text `txtSuche` in the toolbar.
class SearchField : public QLineEdit {
  Q_OBJECT

 public:
  SearchField();

  QSize sizeHint() const override;

  /// What a search is to look for.
  navigation::SearchRequest Request(const SearchSwitches& switches, bool isZoomed) const;

 signals:
  /// The key Esc leads back to the code.
  void Left();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace quillmate::ui
