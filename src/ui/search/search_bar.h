#pragma once

#include <QLineEdit>

#include <quillmate/navigation/search.h>

/// The search text `txtSuche` in the toolbar, and showing what was found.
namespace quillmate::ui {

class Shell;

/// Puts the field in front of the search buttons.
QLineEdit* AddSearchText(Shell& shell);

/// What the search commands are to look for, as field and switches stand.
navigation::SearchRequest CurrentRequest(Shell& shell);
/// Shows what a command has found, or tells that it has found nothing.
void ShowSearchResult(Shell& shell, const navigation::SearchResult& result);

/// Shows a stretch of a module, selected.
void ShowMatch(Shell& shell, int view, std::size_t position, std::size_t length);

}  // namespace quillmate::ui
