#include <algorithm>
#include <cstddef>

#include <quillmate/codedb/facts.h>

/// Lines of a module: those that the editor hides, and where the layout moved the others.
namespace quillmate::codedb {
namespace {

/// Takes one line off the front of `rest`, without its break.
std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, end);
  const std::size_t length = rest.substr(end).starts_with("\r\n") ? 2 : 1;
  rest.remove_prefix(std::min(end + length, rest.size()));
  return line;
}

std::size_t BlanksBefore(std::string_view line) { return std::min(line.find_first_not_of(" \t"), line.size()); }

bool IsEmpty(std::string_view line) { return BlanksBefore(line) == line.size(); }

void AddRun(std::vector<LineRun>& runs, const LineRun& line) {
  if (!runs.empty()) {
    LineRun& last = runs.back();
    if (last.shown + last.count == line.shown && last.original + last.count == line.original &&
        last.shift == line.shift) {
      ++last.count;
      return;
    }
  }
  runs.push_back(line);
}

}  // namespace

std::string WithHiddenLines(std::string_view code, const std::vector<HiddenLines>& hidden) {
  std::size_t size = code.size() + 2;
  for (const HiddenLines& lines : hidden) size += lines.text.size() + 1;
  std::string text;
  text.reserve(size);
  std::int32_t line = 1;
  for (const HiddenLines& lines : hidden) {
    for (; line < lines.line && !code.empty(); ++line) {
      const std::size_t length = std::min(code.find('\n'), code.size() - 1) + 1;
      text.append(code.substr(0, length));
      code.remove_prefix(length);
      if (!text.ends_with('\n')) text += '\n';
    }
    text.append(lines.text) += '\n';
  }
  return text.append(code);
}

std::vector<LineRun> MatchLines(std::string_view code, std::string_view shown) {
  std::vector<LineRun> runs;
  std::int32_t original = 0;
  std::string_view line;
  // The next line of the code that is not empty, and how many empty ones are before it.
  const auto advance = [&] {
    std::int32_t skipped = 0;
    for (; !code.empty(); ++skipped) {
      line = TakeLine(code);
      ++original;
      if (!IsEmpty(line)) return skipped;
    }
    line = {};
    ++original;
    return skipped;
  };
  std::int32_t emptyBefore = advance();
  std::int32_t pending = 0;
  for (std::int32_t number = 1; !shown.empty(); ++number) {
    const std::string_view as = TakeLine(shown);
    if (IsEmpty(as)) {
      ++pending;
      continue;
    }
    // Empty lines right before the line are those of the code, as many as there are; further ones were inserted.
    for (std::int32_t i = std::min(pending, emptyBefore); i > 0; --i) AddRun(runs, {number - i, original - i, 1, 0});
    pending = 0;
    const auto shift = static_cast<std::int32_t>(BlanksBefore(as)) - static_cast<std::int32_t>(BlanksBefore(line));
    AddRun(runs, {number, original, 1, shift});
    emptyBefore = advance();
  }
  return runs;
}

}  // namespace quillmate::codedb
