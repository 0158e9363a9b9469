#pragma once

#include <optional>

#include <quillmate/navigation/project_tree.h>
#include <quillmate/navigation/search.h>
#include <quillmate/project/session.h>

#include "code_area.h"
#include "interaction.h"
#include "search_field.h"

namespace quillmate::ui {

/// The commands that find their way through the code on screen, and copy it.
class CodeCommands {
 public:
  /// Everything must outlive it.
  CodeCommands(Interaction& interaction, project::Session& session, CodeArea& code, SearchField& text,
               const SearchSwitches& switches);

  void ShowDefinition();
  /// The callers of the routine at the caret; nothing when the user was told why there are none to be had.
  std::optional<navigation::ProjectTree> FindRoutineCallers();
  void GoBack();
  void GoNext();

  void SearchFromTop();
  void SearchOn();
  void TakeSearchText();

  void CopyModule();
  void CopySelection();

 private:
  /// True when zoom is on, after telling the user that the command does not work then.
  bool RefusedInZoom();
  navigation::SearchRequest Request() const { return text_.Request(switches_, code_.IsZoomed()); }
  /// Shows what a command has found, or tells that it has found nothing.
  void ShowSearchResult(const navigation::SearchResult& result);

  Interaction& interaction_;
  project::Session& session_;
  CodeArea& code_;
  SearchField& text_;
  const SearchSwitches& switches_;
};

}  // namespace quillmate::ui
