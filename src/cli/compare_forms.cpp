#include "compare_forms.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillmate::cli {
namespace {

using symbols::Edit;
using symbols::Index;
using symbols::kNone;
using symbols::PieceLines;
using symbols::ReferenceIndex;

constexpr std::uint32_t kContext = 3;

/// Writes the stretches of one piece.
class Stretches {
 public:
  Stretches(const ComparedStates& states, Index oldModule, const PieceLines& oldLines, Index newModule,
            const PieceLines& newLines)
      : states_(states), oldModule_(oldModule), oldLines_(oldLines), newModule_(newModule), newLines_(newLines) {}

  std::vector<DiffLine> Run(const std::vector<Edit>& edits) {
    std::uint32_t oldAt = 0, newAt = 0;  // the next lines that were not looked at
    for (std::size_t i = 0; i < edits.size(); ++i) {
      const Edit& edit = edits[i];
      const std::uint32_t between = edit.oldFirst - oldAt;
      if (i == 0 || between > 2 * kContext) {
        const std::uint32_t skipped = between - std::min(between, kContext);
        if (i > 0) Same(oldAt, newAt, kContext);
        Finish();
        Same(oldAt + skipped, newAt + skipped, between - skipped);
      } else {
        Same(oldAt, newAt, between);
      }
      for (std::uint32_t n = 0; n < edit.oldCount; ++n) Add('-', edit.oldFirst + n, kNone);
      for (std::uint32_t n = 0; n < edit.newCount; ++n) Add('+', kNone, edit.newFirst + n);
      oldAt = edit.oldFirst + edit.oldCount;
      newAt = edit.newFirst + edit.newCount;
    }
    const auto left = static_cast<std::uint32_t>(oldLines_.size()) - oldAt;
    Same(oldAt, newAt, std::min(left, kContext));
    Finish();
    return std::move(lines_);
  }

 private:
  void Same(std::uint32_t oldAt, std::uint32_t newAt, std::uint32_t count) {
    for (std::uint32_t n = 0; n < count; ++n) Add(' ', oldAt + n, newAt + n);
  }

  void Add(char sign, std::uint32_t oldAt, std::uint32_t newAt) {
    const std::uint32_t oldLine = oldAt == kNone ? 0 : states_.oldIndex.EditorLine(oldModule_, oldLines_[oldAt]);
    const std::uint32_t newLine = newAt == kNone ? 0 : states_.newIndex.EditorLine(newModule_, newLines_[newAt]);
    const bool follows = (oldLine == 0 || oldLast_ == 0 || oldLine == oldLast_ + 1) &&
                         (newLine == 0 || newLast_ == 0 || newLine == newLast_ + 1);
    if (!follows) Finish();
    if (oldLine != 0) {
      if (oldCount_++ == 0) oldFirst_ = oldLine;
      oldLast_ = oldLine;
    }
    if (newLine != 0) {
      if (newCount_++ == 0) newFirst_ = newLine;
      newLast_ = newLine;
    }
    const bool fromNew = newAt != kNone;
    pending_.push_back({sign, std::string(fromNew ? states_.newIndex.Code(newModule_).LineText(newLines_[newAt])
                                                  : states_.oldIndex.Code(oldModule_).LineText(oldLines_[oldAt]))});
  }

  static std::string Range(std::uint32_t first, std::uint32_t count) {
    return count == 1 ? std::to_string(first) : std::to_string(first) + "," + std::to_string(count);
  }

  void Finish() {
    const bool changes = std::ranges::any_of(pending_, [](const DiffLine& line) { return line.sign != ' '; });
    if (changes) {
      lines_.push_back({'@', "-" + Range(oldFirst_, oldCount_) + " +" + Range(newFirst_, newCount_)});
      std::ranges::move(pending_, std::back_inserter(lines_));
    }
    pending_.clear();
    oldFirst_ = oldCount_ = oldLast_ = newFirst_ = newCount_ = newLast_ = 0;
  }

  const ComparedStates& states_;
  const Index oldModule_;
  const PieceLines& oldLines_;
  const Index newModule_;
  const PieceLines& newLines_;
  std::vector<DiffLine> lines_, pending_;
  std::uint32_t oldFirst_ = 0, oldCount_ = 0, oldLast_ = 0, newFirst_ = 0, newCount_ = 0, newLast_ = 0;
};

}  // namespace

std::vector<DiffLine> UnifiedDifference(const ComparedStates& states, Index oldModule, const PieceLines& oldLines,
                                        Index newModule, const PieceLines& newLines, const std::vector<Edit>& edits) {
  if (edits.empty()) return {};
  return Stretches(states, oldModule, oldLines, newModule, newLines).Run(edits);
}

std::vector<DiffLine> DifferenceOf(const ComparedStates& states, const symbols::RoutineChange& routine) {
  if (routine.text.edits.empty()) return {};
  const auto linesOf = [](const ReferenceIndex& index, const symbols::RoutinePlace& place) {
    return place.IsKnown() ? symbols::RoutineLines(index.Code(place.module), place.routine) : PieceLines();
  };
  return UnifiedDifference(states, routine.oldPlace.module, linesOf(states.oldIndex, routine.oldPlace),
                           routine.newPlace.module, linesOf(states.newIndex, routine.newPlace), routine.text.edits);
}

std::vector<DiffLine> DifferenceOutside(const ComparedStates& states, const symbols::ModuleChange& module) {
  if (module.outside.edits.empty()) return {};
  const auto linesOf = [](const ReferenceIndex& index, Index number) {
    return number != kNone ? symbols::OutsideLines(index.Code(number)) : PieceLines();
  };
  return UnifiedDifference(states, module.oldModule, linesOf(states.oldIndex, module.oldModule), module.newModule,
                           linesOf(states.newIndex, module.newModule), module.outside.edits);
}

}  // namespace quillmate::cli
