#include <algorithm>

#include <quillmate/export/plain_text.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "site_links_p.h"
#include "site_walk_p.h"

namespace quillmate::output {
namespace {

/// Columns of a longer line that was laid out anew are not worth looking for.
constexpr std::size_t kLongLine = 10'000;

/// The columns of the code in the lines that are shown; asked for line by line.
class ShownColumns {
 public:
  ShownColumns(const language::Module& code, std::string_view markedText)
      : code_(code), plain_(PlainText(markedText)), lines_(text::Split(plain_, text::kLineBreak)) {}

  /// 0 when it can't be told.
  std::uint32_t Find(std::uint32_t line, std::uint32_t shownLine, std::uint32_t column) {
    if (shownLine != shownLine_) Enter(line, shownLine);
    if (isSame_) return column;
    return isLong_ ? 0 : symbols::MapColumn(code_.LineText(line), shown_, column);
  }

 private:
  void Enter(std::uint32_t line, std::uint32_t shownLine) {
    shownLine_ = shownLine;
    shown_ = shownLine <= lines_.size() ? text::Utf8FromCode(lines_[shownLine - 1]) : std::string();
    isSame_ = shown_ == code_.LineText(line);
    isLong_ = shown_.size() > kLongLine;
  }

  const language::Module& code_;
  const std::string plain_;
  const std::vector<std::string_view> lines_;
  std::uint32_t shownLine_ = 0;
  std::string shown_;
  bool isSame_ = false;
  bool isLong_ = false;
};

/// The first routine of the index that a name means.
int RoutineMeant(const SiteModel& model, const symbols::Occurrence& name) {
  for (const symbols::SymbolId target : name.targets) {
    const int routine = IsCallable(model.known.SymbolAt(target).kind) ? model.RoutineOf(target) : kNoRoutine;
    if (routine != kNoRoutine) return routine;
  }
  return kNoRoutine;
}

class AnchorFinder {
 public:
  AnchorFinder(SiteModel& model, int module) : model_(model), starts_(model, module) {}

  void Identifier(std::string_view) noexcept {}
  void Text(std::string_view) noexcept {}
  void Mark(text::Marker marker) {
    const int routine = marker == text::Marker::kHeaderLineOpen ? starts_.Here() : kNoRoutine;
    if (routine != kNoRoutine) model_.routines[static_cast<std::size_t>(routine)].hasCode = true;
  }
  void LineBreak() { starts_.NextLine(); }

 private:
  SiteModel& model_;
  RoutineStarts starts_;
};

}  // namespace

std::vector<SiteLink> FindLinks(const SiteModel& model, int module, std::string_view markedText) {
  std::vector<SiteLink> links;
  const symbols::Index number = model.Module(module).number;
  if (number == symbols::kNone) return links;
  ShownColumns columns(model.known.Code(number), markedText);
  for (const symbols::Occurrence& name : model.known.Occurrences(number)) {
    const int routine = RoutineMeant(model, name);
    if (routine == kNoRoutine) continue;
    const std::uint32_t line = model.ShownLine(number, name.line);
    const std::uint32_t column = line == 0 ? 0 : columns.Find(name.line, line, name.column);
    if (column > 0) links.push_back({line, column, name.length, routine, name.declares});
  }
  std::ranges::stable_sort(links, {}, [](const SiteLink& link) { return std::pair(link.line, link.column); });
  return links;
}

RoutineStarts::RoutineStarts(const SiteModel& model, int module)
    : model_(model), last_(model.Module(module).last), next_(model.Module(module).first) {
  NextLine();
}

void RoutineStarts::NextLine() noexcept {
  ++line_.value;
  while (next_ < last_ && IsBegun(*model_.Routine(next_).record)) current_ = next_++;
}

int RoutineStarts::Here() const noexcept {
  return current_ != kNoRoutine && model_.Routine(current_).record->start == line_ ? current_ : kNoRoutine;
}

void FindAnchors(std::string_view markedText, int module, SiteModel& model) {
  AnchorFinder finder(model, module);
  WalkCode(markedText, finder);
}

}  // namespace quillmate::output
