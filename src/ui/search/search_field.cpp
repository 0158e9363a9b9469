#include "search_field.h"

#include <QKeyEvent>
#include <algorithm>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

constexpr int kFieldWidth = 160;
constexpr int kFieldCharacters = 22;

}  // namespace

SearchField::SearchField() {
  setObjectName(QStringLiteral("txtSuche"));
  setToolTip(QStringLiteral("Text für Suche"));
  setPlaceholderText(QStringLiteral("Suchtext"));
  setClearButtonEnabled(true);
  // In a narrow window it gives way before a button does.
  setMinimumWidth(kFieldWidth / 2);
  setMaximumWidth(sizeHint().width());
}

QSize SearchField::sizeHint() const {
  const int width = std::max(kFieldWidth, kFieldCharacters * fontMetrics().averageCharWidth());
  return {width, QLineEdit::sizeHint().height()};
}

navigation::SearchRequest SearchField::Request(const SearchSwitches& switches, bool isZoomed) const {
  navigation::SearchRequest request;
  request.text = ToCode(text());
  request.wholeWord = switches.wholeWord;
  request.project = switches.project;
  request.zoomMode = isZoomed;
  request.isForeign = FromCode(request.text) != text();
  return request;
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  event->accept();
  emit Left();
}

}  // namespace quillmate::ui
