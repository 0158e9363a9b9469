#pragma once

#include <cstddef>
#include <functional>
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

/// The code view's find operation: the first occurrence that begins at `start` or after. An empty text is not found.
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
  kNotFound,  // the message is a warning
  kZoomMode   // the message says what to do first
};

struct SearchResult {
  SearchOutcome outcome = SearchOutcome::kNothing;
  /// What was found, to be shown and selected: view index, position and length.
  codedb::ViewIndex view;
  std::size_t position = 0;
  std::size_t length = 0;
  /// UTF-8, line breaks CR LF.
  std::string_view message;
};

/// The commands `mnuBearbeiten_Suchen`, which searches from the top, and `mnuBearbeiten_SuchenWeiter`, which goes on
/// after the start of the current view's selection. The top is position 1: neither finds what a module begins with.
/// In a project Find next goes through the views after the current one and then through those from the first one to
/// the current one; in a module it stops at the end. Both leave views and selections as they are. Throw
/// files::Failure when a view's text can't be read.
SearchResult FindFirst(CodeViews& views, const SearchRequest& request);
SearchResult FindNext(CodeViews& views, const SearchRequest& request);

/// A stretch of a view's text.
struct TextMatch {
  std::size_t position = 0;
  std::size_t length = 0;
};

/// Which matches of a text count.
enum class MatchWithin {
  kEverything,
  kNoComments,  ///< no part of it is comment
  kStrings,     ///< all of it is in strings, their quotes included
  kComments     ///< all of it is in comments
};

/// Leaves the matches that count. `runs` are those of the text; both in text order. Linear.
void KeepMatchesWithin(std::vector<TextMatch>& matches, const std::vector<StyleRun>& runs, MatchWithin within);

/// What a list of hits is made by.
struct HitRequest {
  std::string text;
  bool wholeWord = false;
  /// Upper and lower case differ.
  bool matchCase = false;
  MatchWithin within = MatchWithin::kEverything;
};

/// All occurrences from the first character on, left to right without overlaps; the second form gives one after the
/// other, since a text that is found everywhere makes a list that is many times as long as the code.
std::vector<TextMatch> FindAll(std::string_view text, std::string_view searched, bool wholeWord);
void ForEachMatch(std::string_view text, std::string_view searched, bool wholeWord,
                  const std::function<void(const TextMatch& match)>& visit);

/// One line of a list of hits.
struct Hit {
  TextMatch match;
  codedb::Line line;
  /// Index of the routine in ModuleHits::routines; -1 outside of routines.
  int routine = -1;
};

/// The hits in one module. Their lines' texts are had from LineAround, so that a list of a million hits stays small.
struct ModuleHits {
  codedb::ViewIndex view;
  std::vector<codedb::RoutineRecord> routines;
  std::vector<Hit> hits;
};

/// Lines and routines of matches in a view, which come in text order; from whatever search. Throws files::Failure.
ModuleHits DescribeHits(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index,
                        const std::vector<TextMatch>& matches);

/// Every hit of the project, by view and position; modules without one are left out. Throws files::Failure, also
/// when a view's text can't be read.
std::vector<ModuleHits> AllHits(codedb::CodeDatabase& database, CodeViews& views, const HitRequest& request);

/// The most that a list shows of a line, in characters. A line may be megabytes long and be found at every place.
inline constexpr std::size_t kShownOfALine = 1023;

/// A piece of a view's line without its line break. Points into the view's text.
struct LinePiece {
  std::string_view text;
  /// Something of the line is in front of the piece, or after it.
  bool cutBefore = false;
  bool cutBehind = false;
};

/// The line that a match begins in, when it is longer than `most` characters so many of them with the match in the
/// middle, as far as the line's ends allow.
LinePiece LineAround(const CodeView& view, const TextMatch& match, std::size_t most = kShownOfALine) noexcept;

}  // namespace quillmate::navigation
