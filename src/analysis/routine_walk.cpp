#include "routine_walk.h"

#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "keywords.h"

namespace quillmate::analysis {
namespace {

using text::HeaderLineClose;
using text::HeaderLineOpen;

constexpr int kPropertyBase = 99;
constexpr int kDeclareOffset = 10;

/// The mark that leads a routine's line while the module is scanned; it stays in the text where the line is wrapped
/// once more by a later walk.
std::string LinePrefix(codedb::RoutineNumber routine, bool isStart) {
  const std::string digits = std::to_string(routine.value);
  std::string prefix = isStart ? "\237*A" : "\237*E";
  prefix.append(digits.size() < 8 ? 8 - digits.size() : 0, '0');
  return prefix + digits + "|";
}

/// `rou_typ` of a header; 0 for a Property line that says neither Get nor Set nor Let.
int KindOf(std::uint16_t flags, int base) noexcept {
  if ((flags & kHasDeclare) != 0) return base + kDeclareOffset;
  if (base != kPropertyBase) return base;
  if ((flags & kHasLet) != 0) return codedb::kLet;
  if ((flags & kHasSet) != 0) return codedb::kSet;
  return (flags & kHasGet) != 0 ? codedb::kGet : 0;
}

int VisibilityOf(std::uint16_t flags) noexcept {
  if ((flags & kHasFriend) != 0) return codedb::kFriend;
  return (flags & kHasPrivate) != 0 ? codedb::kPrivate : codedb::kPublic;
}

/// What follows the last "|" of the line in front of the given end mark, blanks, TABs and continuations taken out.
std::string NameIn(std::string_view line, std::string_view endMark) {
  const std::string_view head = text::TextBefore(line, endMark);
  std::string joined = text::ReplaceAll(head, kContinuationGuard, "");
  std::erase_if(joined, [](char c) { return c == ' ' || c == '\t'; });
  return std::string(text::TextAfterLast(joined, "|"));
}

int CountContinuations(std::string_view line) noexcept {
  int count = 0;
  for (std::size_t at = line.find(kContinuationGuard); at != std::string_view::npos;
       at = line.find(kContinuationGuard, at + kContinuationGuard.size())) {
    ++count;
  }
  return count;
}

}  // namespace

RoutineWalk::RoutineWalk(std::string_view code, const MarkedCode& marked, bool guarded, const WalkSettings& settings,
                         codedb::RoutineNumber last)
    : code_(code),
      marked_(marked),
      guarded_(guarded),
      settings_(settings),
      last_(last),
      lines_(marked.candidates.size()) {
  Walk(kHasSub, codedb::kSub);
  Walk(kHasFunction, codedb::kFunction);
  Walk(kHasProperty, kPropertyBase);
}

void RoutineWalk::Walk(std::uint16_t kindFlag, int baseKind) {
  inRoutine_ = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    WrappedLine& line = lines_[i];
    // The empty lines that an earlier walk put in front are ordinary lines to this one.
    const std::size_t emptyLines = line.emptyLines.size();
    if (settings_.bodyTabs && inRoutine_) {
      for (std::string& empty : line.emptyLines) empty.insert(0, 1, '\t');
    }
    if ((marked_.candidates[i].flags & kindFlag) != 0) VisitRoutineLine(i, baseKind);
    if (settings_.bodyTabs && inRoutine_) IndentInside(line, emptyLines);
    if (inRoutine_) ++line.bodyTabs;
  }
}

/// The body TAB of a candidate line. Lines that begin a routine's mark are exempt; where an empty line was put in front
/// of a header, that line is the one that gets the TAB.
void RoutineWalk::IndentInside(WrappedLine& line, std::size_t emptyLines) {
  const bool wrapped = settings_.numbered ? line.routine.value != 0 : line.before.starts_with(HeaderLineOpen);
  if (line.emptyLines.size() > emptyLines) {
    line.emptyLines.back().insert(0, 1, '\t');
  } else if (!wrapped) {
    line.before.insert(0, 1, '\t');
  }
}

void RoutineWalk::VisitRoutineLine(std::size_t index, int baseKind) {
  if (!inRoutine_) {
    BeginRoutine(index, baseKind);
    return;
  }
  Wrap(lines_[index], false);
  inRoutine_ = false;
}

void RoutineWalk::BeginRoutine(std::size_t index, int baseKind) {
  ++last_.value;
  const std::uint16_t flags = marked_.candidates[index].flags;
  const int kind = KindOf(flags, baseKind);
  if (kind == 0) return;
  if (settings_.numbered) routines_.push_back(Describe(index, kind));
  Wrap(lines_[index], true);
  if (settings_.emptyLineBefore) lines_[index].emptyLines.emplace_back();
  inRoutine_ = (flags & kHasDeclare) == 0;
}

void RoutineWalk::Wrap(WrappedLine& line, bool isStart) {
  if (settings_.numbered) {
    if (line.routine.value != 0) {
      line.before.insert(0, LinePrefix(line.routine, line.isStart));
      numbersInText_ = true;
    }
    line.routine = last_;
    line.isStart = isStart;
  }
  line.before.insert(0, HeaderLineOpen);
  line.after += HeaderLineClose;
}

codedb::RoutineRecord RoutineWalk::Describe(std::size_t index, int kind) const {
  const RoutineCandidate& candidate = marked_.candidates[index];
  const WrappedLine& line = lines_[index];
  const std::string guarded = GuardedLine(candidate);
  std::string whole = line.routine.value != 0 ? LinePrefix(line.routine, line.isStart) : std::string();
  whole.append(line.before).append(guarded).append(line.after);
  const bool declare = (candidate.flags & kHasDeclare) != 0;
  static const std::string kLibMark = std::string(text::KeywordOpen) + "Lib";
  codedb::RoutineRecord routine;
  routine.kind = kind;
  routine.visibility = VisibilityOf(candidate.flags);
  routine.headerLines = CountContinuations(guarded) + 1;
  routine.name = NameIn(whole, declare ? std::string_view(kLibMark) : "(");
  routine.number = last_;
  return routine;
}

/// The marked line with its stand-ins: from the text when they are there or when it has none.
std::string RoutineWalk::GuardedLine(const RoutineCandidate& candidate) const {
  const std::string_view code = code_.substr(candidate.codeBegin, candidate.codeEnd - candidate.codeBegin);
  if (!guarded_ && code.find_first_of("\"\r") != std::string_view::npos)
    return MarkLineGuarded(code, candidate.codeEnd != code_.size());
  return std::string(marked_.text.View().substr(candidate.begin, candidate.end - candidate.begin));
}

}  // namespace quillmate::analysis
