#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include <quillmate/project/session.h>

#include "call_panel.h"
#include "code_area.h"
#include "code_knowledge.h"
#include "interaction.h"
#include "table_file.h"
#include "use_panel.h"

namespace quillmate::ui {

/// The commands that ask what a name in the code means: its declaration, its uses, and what the code view shows of both
/// under the mouse and at the caret.
class NameCommands : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it.
  NameCommands(const ListDesk& desk, CodeArea& code, CodeKnowledge& knowledge, UsePanel& uses, CallPanel& hierarchy);

  /// The understanding, or null and a word to the user.
  std::shared_ptr<const project::Understanding> Known();

  void ShowDeclaration();
  void ShowUses();
  /// Of the routine whose name is at the caret, else of the one around it.
  void ShowHierarchy();
  /// That routine, or a word to the user and kNone.
  symbols::SymbolId RoutineAtCaret();
  /// The use after the current one of the list, or before it; once around.
  void StepThroughUses(int steps);
  /// Asks for a line of the visible module.
  void GoToLine();

  /// The caret has been moved: what is there is lit when it has come to rest.
  void CaretRests() { rest_.start(); }
  /// Shows a declaration; one that is nowhere (a control) by its module.
  void GoToSymbol(symbols::SymbolId symbol);
  void GoToStretch(const project::TextStretch& stretch);
  /// Shows the list of uses of a declaration, or of what one module declares in another.
  void ListUsesBetween(symbols::Index from, symbols::Index to);
  void ListUses(const std::vector<symbols::SymbolId>& targets);

 private:
  struct Meant {
    std::shared_ptr<const project::Understanding> known;
    std::vector<symbols::SymbolId> targets;
    /// Where the name is.
    std::optional<symbols::Occurrence> name;
  };
  /// What the name at an offset of the visible module's text means.
  Meant MeantAt(std::size_t offset);
  QString NameAtCaret() const;
  /// In the status bar.
  void Say(const QString& text);
  void ChooseAmong(const Meant& meant);
  void LightOccurrences();
  ListTexts Texts();

  ListDesk desk_;
  Interaction& interaction_;
  project::Session& session_;
  CodeArea& code_;
  CodeKnowledge& knowledge_;
  UsePanel& uses_;
  CallPanel& hierarchy_;
  /// Names are lit when the caret has come to rest.
  QTimer rest_;
};

}  // namespace quillmate::ui
