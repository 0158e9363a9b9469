#pragma once

#include <QPlainTextEdit>
#include <QTextDocument>
#include <list>
#include <memory>
#include <string_view>
#include <vector>

#include <quillmate/navigation/code_view.h>

#include "code_style.h"

namespace quillmate::ui {

/// The code view: shows one module at a time, read-only but with a caret. Caret and selection belong to the module's
/// CodeView and are kept there; what is built for the screen (a text document for each module) is made when a module is
/// first looked at and kept for those looked at last, so that a large project costs little memory.
class CodeEditor : public QPlainTextEdit {
 public:
  explicit CodeEditor(QWidget* parent = nullptr);
  ~CodeEditor() override;

  /// Fonts and colours; what was built before is dropped, the view on screen is built anew.
  void SetStyle(CodeStyle style);

  /// Shows a module. `view` and `runs` must live until another one is shown or Forget is called; `index` tells the
  /// modules apart.
  void ShowView(int index, navigation::CodeView& view, const std::vector<navigation::StyleRun>& runs);
  /// Takes over caret and selection from the view and scrolls their line to the top.
  void ShowSelection();
  /// Shows nothing and drops everything built: before the views of the project go away.
  void Forget();

  /// The code on screen and what is selected of it, Windows-1252 with CR LF; empty while nothing is shown. Valid until
  /// something else is shown.
  std::string_view Code() const;
  std::string_view SelectedCode() const;

  /// Modules whose text document is kept.
  std::size_t KeptDocuments() const noexcept { return pages_.size(); }

 protected:
  QMimeData* createMimeDataFromSelection() const override;

 private:
  struct Page;

  Page& PageOf(int index);
  void Trim();
  void StoreScroll();
  void StoreSelection();
  void PlaceCursor();
  int PositionOf(std::size_t offset) const;
  std::size_t OffsetOf(int position) const;

  CodeStyle style_;
  navigation::CodeView* view_ = nullptr;
  const std::vector<navigation::StyleRun>* runs_ = nullptr;
  /// Last used first.
  std::list<Page> pages_;
  bool following_ = false;
};

}  // namespace quillmate::ui
