#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include <quillmate/project/note_places.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::project {
namespace {

/// A line without its break and the blanks around it, as the code is stored.
std::string_view Trimmed(const navigation::CodeView& view, int line) {
  const auto at = static_cast<std::size_t>(line);
  const std::size_t start = view.LineStart(at);
  const std::size_t end = at + 1 < view.LineCount() ? view.LineStart(at + 1) : view.Length();
  std::string_view text = std::string_view(view.Text()).substr(start, end - start);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

/// The routine around each line, asked for line after line.
class Walk {
 public:
  explicit Walk(const std::vector<RoutineLines>& routines) : routines_(routines) {}

  const std::string& At(int line) {
    static const std::string none;
    while (next_ < routines_.size() && routines_[next_].first <= line) ++next_;
    return next_ > 0 && routines_[next_ - 1].last >= line ? routines_[next_ - 1].name : none;
  }

 private:
  const std::vector<RoutineLines>& routines_;
  std::size_t next_ = 0;
};

}  // namespace

codedb::Note NoteAt(const std::string& project, const std::string& module, const navigation::CodeView& view,
                    const std::vector<RoutineLines>& routines, int line) {
  codedb::Note note{project, module, {}, text::Utf8FromCode(Trimmed(view, line)), 0, {}, false};
  note.routine = Walk(routines).At(line);
  Walk walk(routines);
  for (int before = 0; before < line; ++before) {
    if (Trimmed(view, before) == Trimmed(view, line) && walk.At(before) == note.routine) ++note.occurrence;
  }
  return note;
}

std::vector<NotePlace> PlacesOf(const std::vector<codedb::Note>& notes, const navigation::CodeView& view,
                                const std::vector<RoutineLines>& routines) {
  using Key = std::pair<std::string, std::string>;
  std::map<Key, std::vector<int>> lines;
  std::map<std::string, bool, std::less<>> wanted;
  for (const codedb::Note& note : notes) {
    lines[{note.routine, note.line}];
    wanted[text::CodeFromUtf8(note.line)] = true;
  }
  Walk walk(routines);
  for (int line = 0; line < static_cast<int>(view.LineCount()); ++line) {
    const std::string_view text = Trimmed(view, line);
    const std::string& routine = walk.At(line);
    if (!wanted.contains(text)) continue;
    const auto found = lines.find({routine, text::Utf8FromCode(text)});
    if (found != lines.end()) found->second.push_back(line);
  }
  std::map<std::string_view, int> headers;
  for (const RoutineLines& routine : routines) headers.emplace(routine.name, routine.first);

  std::vector<NotePlace> places;
  for (const codedb::Note& note : notes) {
    const std::vector<int>& same = lines[{note.routine, note.line}];
    const auto header = headers.find(note.routine);
    if (!same.empty()) {
      // Where one of several equal lines has gone, the last one that is left.
      const auto at = std::min(static_cast<std::size_t>(std::max(note.occurrence, 0)), same.size() - 1);
      places.push_back({same[at], true});
    } else {
      places.push_back({header == headers.end() ? 0 : header->second, false});
    }
  }
  return places;
}

}  // namespace quillmate::project
