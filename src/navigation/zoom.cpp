#include <algorithm>
#include <string>

#include <quillmate/navigation/routine_lines.h>
#include <quillmate/navigation/zoom.h>
#include <quillmate/text/markers.h>

namespace quillmate::navigation {
namespace {

/// Where the caret is after it was sent to a line.
std::size_t CaretOfLine(CodeView& view, codedb::Line line) {
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

LineRange ZoomLines(codedb::CodeDatabase& database, codedb::Line line, codedb::ModuleNumber module,
                    codedb::Line lineCount) {
  if (const auto routine = database.RoutineAt(line, module)) {
    return {routine->start.value_or(codedb::Line{}), routine->end.value_or(codedb::Line{})};
  }
  return {{1}, database.LastDeclarationLine(module).value_or(lineCount)};
}

std::optional<PlainModule> BuildZoomView(codedb::CodeDatabase& database, CodeView& view,
                                         const std::vector<StyleRun>& runs, codedb::ViewIndex index,
                                         codedb::Line line) {
  const LineRange lines =
      ZoomLines(database, line, codedb::ModuleOf(index), {static_cast<std::int32_t>(view.LineCount())});
  if (lines.first.value == 0) return std::nullopt;
  const std::size_t start = CaretOfLine(view, lines.first);
  const std::size_t end = std::max(start, EndOfLine(view, CaretOfLine(view, lines.last)));
  view.Select(start, 1);
  return PlainModule{view.Text().substr(start, end - start), CutRuns(runs, start, end)};
}

}  // namespace quillmate::navigation
