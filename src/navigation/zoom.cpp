#include <algorithm>
#include <string>

#include <quillmate/navigation/caret_tracking.h>
#include <quillmate/navigation/zoom.h>
#include <quillmate/text/markers.h>

namespace quillmate::navigation {
namespace {

std::string LastDeclarationQuery(int moduleNumber) {
  return "SELECT Min([rou_start])-1 AS Letzte"
         " FROM td_rout"
         " WHERE (([mod_num]=" +
         std::to_string(moduleNumber) + "));";
}

/// Where the caret stands after it was sent to a line.
std::size_t CaretOfLine(CodeView& view, long line) {
  view.GoToLine(line);
  return view.SelStart();
}

std::size_t EndOfLine(const CodeView& view, std::size_t caret) {
  return std::min(view.Text().find_first_of(text::kLineBreak, caret), view.Length());
}

/// The runs between two offsets, cut at them and counted from the first one.
std::vector<StyleRun> CutRuns(const std::vector<StyleRun>& runs, std::size_t start, std::size_t end) {
  std::vector<StyleRun> cut;
  auto run = std::ranges::upper_bound(runs, start, {}, [](const StyleRun& r) { return r.start + r.length; });
  for (; run != runs.end() && run->start < end; ++run) {
    const std::size_t from = std::max(run->start, start);
    const std::size_t to = std::min(run->start + run->length, end);
    cut.push_back({from - start, to - from, run->span, run->headerLine});
  }
  return cut;
}

}  // namespace

LineRange ZoomLines(codedb::CodeDatabase& database, long line, int moduleNumber, long lineCount) {
  if (const auto routine = RoutineAtLine(database, line, moduleNumber)) return {routine->start, routine->end};
  codedb::Recordset declarations = database.OpenRecordset(LastDeclarationQuery(moduleNumber));
  if (!declarations.Next()) return {1, lineCount};
  return {1, static_cast<long>(declarations.Number(0).value_or(lineCount))};
}

std::optional<PlainModule> BuildZoomView(codedb::CodeDatabase& database, CodeView& view,
                                         const std::vector<StyleRun>& runs, int index, long line) {
  const LineRange lines = ZoomLines(database, line, index + 1, static_cast<long>(view.LineCount()));
  if (lines.first == 0) return std::nullopt;
  const std::size_t start = CaretOfLine(view, lines.first);
  const std::size_t end = std::max(start, EndOfLine(view, CaretOfLine(view, lines.last)));
  view.Select(start, 1);
  return PlainModule{view.Text().substr(start, end - start), CutRuns(runs, start, end)};
}

}  // namespace quillmate::navigation
