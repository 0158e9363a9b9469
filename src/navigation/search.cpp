#include <algorithm>

#include <quillmate/navigation/search.h>
#include <quillmate/navigation/zoom.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "needle_p.h"
#include "words_p.h"

namespace quillmate::navigation {
namespace {

constexpr std::string_view kNotInModule =
    "Der Suchtext\r\n"
    "wurde im Modul nicht gefunden .\r\n";
constexpr std::string_view kNotInProject = "Der Suchtext wurde im gesamten Projekt nicht gefunden";
constexpr std::string_view kNoNextInModule =
    "Der Suchtext\r\n"
    "wurde ausgehend von  der letzten Position \r\n"
    "im Modul nicht gefunden .\r\n";
constexpr std::string_view kNoNextInProject = "Der Suchtext wurde nicht gefunden";

/// Where the commands begin in a view: a match at its very first character is not found.
constexpr std::size_t kTop = 1;

/// A word ends wherever two identifier characters do not meet.
bool IsWordLimit(std::string_view text, std::size_t offset) noexcept {
  return offset == 0 || offset == text.size() || !IsIdentifierAt(text, offset - 1) || !IsIdentifierAt(text, offset);
}

/// The find operation with what it needs to know about the searched text.
class Finder {
 public:
  Finder(std::string_view searched, bool wholeWord, bool matchCase = false)
      : needle_(searched, !matchCase), wholeWord_(wholeWord) {}

  std::optional<std::size_t> Find(std::string_view text, std::size_t start) {
    needle_.Start(text, start);
    for (std::size_t found = needle_.Next(); found != std::string_view::npos; found = needle_.Next()) {
      if (IsMatch(text, found)) return found;
    }
    return std::nullopt;
  }

  template <typename Visit>
  void ForEach(std::string_view text, Visit visit) {
    std::size_t free = 0;
    needle_.Start(text, 0);
    for (std::size_t found = needle_.Next(); found != std::string_view::npos; found = needle_.Next()) {
      if (found < free || !IsMatch(text, found)) continue;
      visit(TextMatch{found, needle_.Length()});
      free = found + needle_.Length();
    }
  }

  std::vector<TextMatch> FindAll(std::string_view text) {
    std::vector<TextMatch> matches;
    ForEach(text, [&](const TextMatch& match) { matches.push_back(match); });
    return matches;
  }

  std::size_t Length() const noexcept { return needle_.Length(); }

 private:
  bool IsMatch(std::string_view text, std::size_t found) const noexcept {
    return !wholeWord_ || (IsWordLimit(text, found) && IsWordLimit(text, found + needle_.Length()));
  }

  Needle needle_;
  bool wholeWord_;
};

/// The views that a command goes through, one after the other.
class Search {
 public:
  Search(CodeViews& views, const SearchRequest& request)
      : views_(views), finder_(text::Trim(request.text), request.wholeWord), isForeign_(request.isForeign) {}

  bool In(codedb::ViewIndex view, std::size_t start) {
    if (isForeign_) return false;
    const auto position = finder_.Find(views_.View(view).Text(), start);
    if (position) result_ = {SearchOutcome::kFound, view, *position, finder_.Length(), {}};
    return position.has_value();
  }

  /// The views from one index up to another, which no longer belongs to them.
  bool FromTop(codedb::ViewIndex first, codedb::ViewIndex end) {
    for (codedb::ViewIndex view = first; view < end; ++view.value) {
      if (In(view, kTop)) return true;
    }
    return false;
  }

  SearchResult Result(bool found, std::string_view message) const {
    return found ? result_ : SearchResult{SearchOutcome::kNotFound, {}, 0, 0, message};
  }

 private:
  CodeViews& views_;
  Finder finder_;
  bool isForeign_;
  SearchResult result_;
};

/// What both commands answer before they search; nothing when they have to.
std::optional<SearchResult> AnswerAtOnce(const SearchRequest& request) {
  if (request.zoomMode) return SearchResult{SearchOutcome::kZoomMode, {}, 0, 0, kZoomModeText};
  if (text::Trim(request.text).empty()) return SearchResult{};
  return std::nullopt;
}

}  // namespace

std::optional<std::size_t> Find(std::string_view text, std::string_view searched, std::size_t start, bool wholeWord) {
  if (searched.empty()) return std::nullopt;
  return Finder(searched, wholeWord).Find(text, start);
}

SearchResult FindFirst(CodeViews& views, const SearchRequest& request) {
  if (const auto answer = AnswerAtOnce(request)) return *answer;
  Search search(views, request);
  if (!request.project) return search.Result(search.In(views.Current(), kTop), kNotInModule);
  return search.Result(search.FromTop({}, {views.Count()}), kNotInProject);
}

SearchResult FindNext(CodeViews& views, const SearchRequest& request) {
  if (const auto answer = AnswerAtOnce(request)) return *answer;
  Search search(views, request);
  const codedb::ViewIndex current = views.Current();
  const bool inCurrent = search.In(current, views.View(current).SelStart() + 1);
  if (!request.project) return search.Result(inCurrent, kNoNextInModule);
  const bool found =
      inCurrent || search.FromTop({current.value + 1}, {views.Count()}) || search.FromTop({}, {current.value + 1});
  return search.Result(found, kNoNextInProject);
}

std::vector<TextMatch> FindAll(std::string_view text, std::string_view searched, bool wholeWord) {
  if (searched.empty()) return {};
  return Finder(searched, wholeWord).FindAll(text);
}

void ForEachMatch(std::string_view text, std::string_view searched, bool wholeWord,
                  const std::function<void(const TextMatch& match)>& visit) {
  if (!searched.empty()) Finder(searched, wholeWord).ForEach(text, visit);
}

ModuleHits DescribeHits(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index,
                        const std::vector<TextMatch>& matches) {
  ModuleHits module{index, {}, {}};
  if (matches.empty()) return module;
  module.routines = database.RoutinesWithLines(codedb::ModuleOf(index));
  module.hits.reserve(matches.size());
  LineWalk routines(module.routines);
  for (const TextMatch& match : matches) {
    const codedb::Line line = view.LineAt(match.position);
    module.hits.push_back({match, line, routines.At(line)});
  }
  return module;
}

void KeepMatchesWithin(std::vector<TextMatch>& matches, const std::vector<StyleRun>& runs, MatchWithin within) {
  if (within == MatchWithin::kEverything) return;
  const Span span = within == MatchWithin::kStrings ? Span::kString : Span::kComment;
  auto run = runs.begin();
  std::erase_if(matches, [&](const TextMatch& match) {
    const std::size_t end = match.position + match.length;
    while (run != runs.end() && run->start + run->length <= match.position) ++run;
    std::size_t covered = 0;
    for (auto at = run; at != runs.end() && at->start < end; ++at) {
      if (at->span != span) continue;
      covered += std::min(at->start + at->length, end) - std::max(at->start, match.position);
    }
    return within == MatchWithin::kNoComments ? covered > 0 : covered < match.length;
  });
}

std::vector<ModuleHits> AllHits(codedb::CodeDatabase& database, CodeViews& views, const HitRequest& request) {
  std::vector<ModuleHits> modules;
  if (request.text.empty()) return modules;
  Finder finder(request.text, request.wholeWord, request.matchCase);
  // One room for all modules: what is freed between their hits would be lost to millions of them.
  std::vector<TextMatch> matches;
  for (codedb::ViewIndex i; i.value < views.Count(); ++i.value) {
    const CodeView& view = views.View(i);
    matches.clear();
    finder.ForEach(view.Text(), [&](const TextMatch& match) { matches.push_back(match); });
    if (matches.empty()) continue;
    if (request.within != MatchWithin::kEverything) KeepMatchesWithin(matches, views.Runs(i), request.within);
    if (!matches.empty()) modules.push_back(DescribeHits(database, view, i, matches));
  }
  return modules;
}

LinePiece LineAround(const CodeView& view, const TextMatch& match, std::size_t most) noexcept {
  const std::size_t line = view.LineFromChar(match.position);
  const std::size_t start = view.LineStart(line);
  const bool isLast = line + 1 == view.LineCount();
  const std::size_t end = isLast ? view.Length() : view.LineStart(line + 1) - text::kLineBreak.size();
  const std::size_t shown = std::min(most, end - start);
  const std::size_t room = (most - std::min(match.length, most)) / 2;
  const std::size_t first = std::min(std::max(match.position, start + room) - room, end - shown);
  return {std::string_view(view.Text()).substr(first, shown), first > start, first + shown < end};
}

}  // namespace quillmate::navigation
