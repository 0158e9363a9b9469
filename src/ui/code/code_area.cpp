#include "code_area.h"

#include <utility>

#include <quillmate/navigation/zoom.h>

namespace quillmate::ui {

CodeArea::CodeArea(project::Session& session) : session_(session), main_(new CodeEditor), zoom_(new CodeEditor) {
  main_->setObjectName(QStringLiteral("rtbHaupt"));
  zoom_->setObjectName(QStringLiteral("rtbZoom"));
  addWidget(main_);
  addWidget(zoom_);
  main_->ShowMargin(true);
  connect(main_, &CodeEditor::CaretMoved, this, &CodeArea::CaretMoved);
  connect(zoom_, &CodeEditor::CaretMoved, this, &CodeArea::ZoomCaretMoved);
  for (CodeEditor* editor : {main_, zoom_}) {
    connect(editor, &CodeEditor::LinkFollowed, this, &CodeArea::LinkFollowed);
    connect(editor, &CodeEditor::FontStepsTurned, this, &CodeArea::FontStepsTurned);
    connect(editor, &QWidget::customContextMenuRequested, this, [this, editor](const QPoint& place) {
      const QPoint global = editor->viewport()->mapToGlobal(place);
      emit(editor == main_ ? MenuWanted(global) : ZoomMenuWanted(global));
    });
  }
}

CodeEditor& CodeArea::Editor() const { return *static_cast<CodeEditor*>(currentWidget()); }

void CodeArea::ShowPlace(project::Reveal reveal) {
  navigation::CodeViews& views = session_.Views();
  navigation::CodeView& view = session_.View();
  main_->ShowView(views.Current().value, view, views.Runs(views.Current()));
  const bool atTop = reveal == project::Reveal::kAtTop;
  if (atTop) {
    main_->ShowSelection();
  } else {
    main_->RevealSelection();
  }
  if (IsZoomed()) {
    const std::size_t position = view.SelStart();
    const std::size_t length = view.SelLength();
    BuildZoom();
    if (!atTop) SelectInZoom(position, length);
  }
  marked_ = Selection();
  emit PlaceShown();
  Editor().setFocus();
}

std::string CodeArea::ChosenSelection() const {
  std::string selection = Selection();
  return selection == marked_ ? std::string() : selection;
}

void CodeArea::Forget() { main_->Forget(); }

void CodeArea::SetZoom(bool on) {
  if (on) BuildZoom();
  const bool hadFocus = Editor().hasFocus();
  setCurrentWidget(on ? zoom_ : main_);
  emit ZoomChanged(on);
  if (on || hadFocus) Editor().setFocus();
  if (!on) {
    zoom_->Forget();
    zoomed_ = {};
  }
}

void CodeArea::BuildZoom() {
  const codedb::ViewIndex current = session_.Views().Current();
  navigation::CodeView& code = session_.View();
  const codedb::Line line = code.LineAt(code.SelStart());
  auto text = navigation::BuildZoomView(session_.Index(), code, session_.Views().Runs(current), current, line);
  if (!text) return;
  main_->ShowSelection();
  zoom_->Forget();
  zoomed_ = {navigation::CodeView(std::move(text->text)), std::move(text->runs), code.SelStart()};
  zoom_->NumberFrom(code.LineAt(code.SelStart()));
  zoom_->ShowView(0, zoomed_.view, zoomed_.runs);
}

/// In the zoom view the stretch is as far after the first character as it does in the module.
void CodeArea::SelectInZoom(std::size_t position, std::size_t length) {
  if (position < zoomed_.start) return;
  zoomed_.view.Select(position - zoomed_.start, length);
  zoom_->RevealSelection();
}

std::size_t CodeArea::Caret() const { return InModule(IsZoomed() ? zoomed_.view.Caret() : session_.View().Caret()); }

void CodeArea::SetAnswers(const NameAnswers& answers) {
  for (CodeEditor* editor : {main_, zoom_}) {
    editor->SetAnswers({[this, answers](std::size_t offset) {
                          auto link = answers.link(InModule(offset));
                          if (link && IsZoomed()) link->position -= zoomed_.start;
                          return link;
                        },
                        [this, answers](std::size_t offset) { return answers.description(InModule(offset)); }});
  }
}

void CodeArea::SetHighlights(const std::vector<navigation::TextMatch>& matches) {
  if (main_->ShowsModule()) main_->SetHighlights(matches);
  if (!IsZoomed() || !zoom_->ShowsModule()) return;
  std::vector<navigation::TextMatch> inside;
  for (const navigation::TextMatch& match : matches) {
    if (match.position < zoomed_.start || match.position - zoomed_.start >= zoomed_.view.Length()) continue;
    inside.push_back({match.position - zoomed_.start, match.length});
  }
  zoom_->SetHighlights(std::move(inside));
}

void CodeArea::SetStyle(const CodeStyle& style) {
  for (CodeEditor* editor : {main_, zoom_}) editor->SetStyle(style);
}

void CodeArea::SetFontSteps(int steps) {
  for (CodeEditor* editor : {main_, zoom_}) editor->SetFontSteps(steps);
}

void CodeArea::ShowLineNumbers(bool on) {
  for (CodeEditor* editor : {main_, zoom_}) editor->ShowLineNumbers(on);
}

}  // namespace quillmate::ui
