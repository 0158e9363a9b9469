#include "code_commands.h"

#include <string>
#include <utility>

#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/zoom.h>

#include "qt_text.h"

namespace quillmate::ui {

CodeCommands::CodeCommands(Interaction& interaction, project::Session& session, CodeArea& code, SearchField& text,
                           const SearchSwitches& switches)
    : interaction_(interaction), session_(session), code_(code), text_(text), switches_(switches) {}

bool CodeCommands::RefusedInZoom() {
  if (!code_.IsZoomed()) return false;
  interaction_.Show(navigation::kZoomModeText, MessageIcon::kInformation);
  return true;
}

void CodeCommands::ShowDefinition() {
  if (RefusedInZoom()) return;
  const navigation::CodeView& view = session_.View();
  const std::string name(navigation::IdentifierAtCaret(view.Text(), view.Caret()));
  if (!name.empty() && !session_.GoToDefinition(name)) interaction_.Show(navigation::kUnknownIdentifierText);
  code_.Main().setFocus();
}

std::optional<navigation::ProjectTree> CodeCommands::FindRoutineCallers() {
  if (session_.Routine().empty()) return std::nullopt;
  navigation::Callers callers;
  {
    const Working working(interaction_);
    callers =
        navigation::FindCallers(session_.Index(), session_.Texts(), session_.Views().Current(), session_.Routine());
  }
  const std::string_view message = navigation::ScopeMessage(callers.scope);
  if (message.empty()) return std::move(callers.tree);
  const bool isError = callers.scope == navigation::CallerScope::kFailed;
  interaction_.Show(message, isError ? MessageIcon::kNone : MessageIcon::kExclamation);
  return std::nullopt;
}

void CodeCommands::GoBack() {
  if (!session_.Back()) code_.Editor().setFocus();
}

void CodeCommands::GoNext() {
  if (!session_.Next()) code_.Editor().setFocus();
}

void CodeCommands::SearchFromTop() { ShowSearchResult(navigation::FindFirst(session_.Views(), Request())); }

void CodeCommands::SearchOn() { ShowSearchResult(navigation::FindNext(session_.Views(), Request())); }

void CodeCommands::ShowSearchResult(const navigation::SearchResult& result) {
  switch (result.outcome) {
    case navigation::SearchOutcome::kNothing:
      return;
    case navigation::SearchOutcome::kFound:
      session_.GoToMatch(result.view, {result.position, result.length});
      return;
    case navigation::SearchOutcome::kNotFound:
      interaction_.Show(result.message, MessageIcon::kExclamation);
      code_.Main().setFocus();
      return;
    case navigation::SearchOutcome::kZoomMode:
      interaction_.Show(result.message, MessageIcon::kInformation);
      return;
  }
}

void CodeCommands::TakeSearchText() {
  const std::string selected = code_.Selection();
  if (!selected.empty()) text_.setText(FromCode(selected));
}

void CodeCommands::CopyModule() {
  if (RefusedInZoom()) return;
  code_.Main().selectAll();
  code_.Main().setFocus();
  code_.Main().copy();
}

void CodeCommands::CopySelection() {
  code_.Editor().setFocus();
  code_.Editor().copy();
}

}  // namespace quillmate::ui
