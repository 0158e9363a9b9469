#include "search_bar.h"

#include <QKeyEvent>
#include <algorithm>

#include "qt_text.h"
#include "shell.h"
#include "whereabouts.h"
#include "zoom_view.h"

namespace quillmate::ui {
namespace {

constexpr int kFieldWidth = 160;
constexpr int kFieldCharacters = 22;

/// The key Esc leads back to the code.
class SearchText : public QLineEdit {
 public:
  explicit SearchText(Shell& shell) : shell_(shell) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Escape) {
      QLineEdit::keyPressEvent(event);
      return;
    }
    event->accept();
    if (shell_.mode == 0) {
      shell_.treApp->setFocus();
    } else {
      shell_.Editor().setFocus();
    }
  }

 private:
  Shell& shell_;
};

/// In the zoom view the stretch lies as far behind the first character as it does in the module.
void SelectInZoom(Shell& shell, std::size_t position, std::size_t length) {
  if (position < shell.zoom.start) return;
  shell.zoom.view.Select(position - shell.zoom.start, length);
  shell.rtbZoom->RevealSelection();
}

}  // namespace

QLineEdit* AddSearchText(Shell& shell) {
  auto* field = new SearchText(shell);
  field->setObjectName(QStringLiteral("txtSuche"));
  field->setToolTip(QStringLiteral("Text für Suche"));
  field->setPlaceholderText(QStringLiteral("Suchtext"));
  field->setClearButtonEnabled(true);
  field->setFixedWidth(std::max(kFieldWidth, kFieldCharacters * field->fontMetrics().averageCharWidth()));
  shell.commands->ToolBar().insertWidget(&shell.commands->Button(ButtonId::kSearch), field);
  QObject::connect(field, &QLineEdit::returnPressed, field,
                   [&shell] { shell.commands->Item(CommandId::kSearchFromTop).trigger(); });
  return field;
}

navigation::SearchRequest CurrentRequest(Shell& shell) {
  const QString typed = shell.txtSuche->text();
  navigation::SearchRequest request;
  request.text = ToCode(typed);
  request.wholeWord = shell.commands->Item(CommandId::kSwitchWholeWord).isChecked();
  request.project = shell.commands->Item(CommandId::kSwitchProjectSearch).isChecked();
  request.zoomMode = IsZoomed(shell);
  request.isForeign = FromCode(request.text) != typed;
  return request;
}

void ShowSearchResult(Shell& shell, const navigation::SearchResult& result) {
  switch (result.outcome) {
    case navigation::SearchOutcome::kNothing:
      return;
    case navigation::SearchOutcome::kFound:
      ShowMatch(shell, result.view, result.position, result.length);
      return;
    case navigation::SearchOutcome::kNotFound:
      shell.Show(result.message, MessageIcon::kExclamation);
      shell.rtbHaupt->setFocus();
      return;
    case navigation::SearchOutcome::kZoomMode:
      shell.Show(result.message, MessageIcon::kInformation);
      return;
  }
}

void ShowMatch(Shell& shell, int view, std::size_t position, std::size_t length) {
  ShowModule(shell, view);
  shell.views.View(view).Select(position, length, true);
  shell.rtbHaupt->RevealSelection();
  RefreshStatus(shell);
  if (IsZoomed(shell)) {
    BuildZoom(shell);
    SelectInZoom(shell, position, length);
  }
  shell.Editor().setFocus();
}

}  // namespace quillmate::ui
