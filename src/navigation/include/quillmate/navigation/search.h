#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_view.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/routine_lines.h>

/// Search in the code views. Texts are Windows-1252; a search text that has characters outside of it can't be found and
/// should not be asked for. Positions are 0-based offsets in a view's text, where a line break counts as two characters
/// (CR LF). Case does not count, that of umlauts and accented letters neither. A whole word has no identifier character
/// beside its own ones.
namespace quillmate::navigation {

/// The code view's find operation: the first occurrence that begins at `start` or behind. An empty text is not found.
std::optional<std::size_t> Find(std::string_view text, std::string_view searched, std::size_t start, bool wholeWord);

/// What a search command runs on.
struct SearchRequest {
  /// Content of `txtSuche`; blanks around it do not count.
  std::string text;
  bool wholeWord = false;
  /// In the whole project instead of the current module.
  bool project = false;
  bool zoomMode = false;
  /// The text that the user typed has characters outside of Windows-1252: it occurs nowhere.
  bool isForeign = false;
};

enum class SearchOutcome {
  kNothing,  // no text to look for: nothing happens
  kFound,
  kNotFound,  // message with an exclamation icon, then the current view gets the focus
  kZoomMode   // message with an information icon
};

struct SearchResult {
  SearchOutcome outcome = SearchOutcome::kNothing;
  /// What was found, to be shown and selected: view index, position and length.
  int view = 0;
  std::size_t position = 0;
  std::size_t length = 0;
  /// UTF-8, line breaks CR LF.
  std::string_view message;
};

/// The commands `mnuBearbeiten_Suchen`, which searches from the top, and `mnuBearbeiten_SuchenWeiter`, which goes on
/// behind the start of the current view's selection. The top is position 1: neither finds what a module begins with.
/// In a project Find next goes through the views behind the current one and then through those from the first one to
/// the current one; in a module it stops at the end. Both leave views and selections as they are. Throw
/// std::runtime_error when a view's text can't be read.
SearchResult FindFirst(CodeViews& views, const SearchRequest& request);
SearchResult FindNext(CodeViews& views, const SearchRequest& request);

/// A stretch of a view's text.
struct TextMatch {
  std::size_t position = 0;
  std::size_t length = 0;
};

/// All occurrences from the first character on, left to right without overlaps.
std::vector<TextMatch> FindAll(std::string_view text, std::string_view searched, bool wholeWord);

/// One line of a list of hits.
struct Hit {
  TextMatch match;
  /// 1-based, as the index counts lines.
  long line = 0;
  /// Index of the routine in ModuleHits::routines; -1 outside of routines.
  int routine = -1;
};

/// The hits in one module. Their lines' texts are had from LineText, so that a list of a million hits stays small.
struct ModuleHits {
  /// 0-based view index.
  int view = 0;
  std::vector<RoutineLines> routines;
  std::vector<Hit> hits;
};

/// Lines and routines of matches in a view, which come in text order; from whatever search. Throws
/// codedb::DatabaseError.
ModuleHits DescribeHits(codedb::CodeDatabase& database, const CodeView& view, int index,
                        const std::vector<TextMatch>& matches);

/// Every hit of the project, by view and position; modules without one are left out. Throws codedb::DatabaseError, and
/// std::runtime_error when a view's text can't be read.
std::vector<ModuleHits> AllHits(codedb::CodeDatabase& database, CodeViews& views, std::string_view searched,
                                bool wholeWord);

/// A 1-based line of a view without its line break; empty when there is no such line. Points into the view's text.
std::string_view LineText(const CodeView& view, long line) noexcept;

}  // namespace quillmate::navigation
