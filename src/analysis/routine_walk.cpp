#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "keywords_p.h"
#include "routine_walk_p.h"

namespace quillmate::analysis {
namespace {

using text::HeaderLineClose;
using text::HeaderLineOpen;

constexpr int kPropertyBase = 99;
constexpr int kDeclareOffset = 10;

struct WalkKind {
  std::uint16_t flag;
  int baseKind;
};
constexpr std::array<WalkKind, kRoutineWalks> kWalks = {
    {{kHasSub, codedb::kSub}, {kHasFunction, codedb::kFunction}, {kHasProperty, kPropertyBase}}};

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
  std::string_view head = text::TextBefore(line, endMark);
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  std::string joined;
  if (head.find(kContinuationGuard) == std::string_view::npos) {
    head.remove_prefix(head.rfind('|') + 1);
    joined = head;
    std::erase_if(joined, isBlank);
    return joined;
  }
  joined = text::ReplaceAll(head, kContinuationGuard, "");
  std::erase_if(joined, isBlank);
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

RoutineWalks::RoutineWalks(bool guarded, const WalkSettings& settings, const WalkNumbers& before)
    : guarded_(guarded), settings_(settings) {
  for (std::size_t walk = 0; walk < kRoutineWalks; ++walk) walks_[walk].last = before[walk];
}

WrappedLine RoutineWalks::Visit(const RoutineCandidate& candidate, std::string_view marked) {
  Line line{candidate, marked};
  WrappedLine& wrapped = line.wrapped;
  for (std::size_t walk = 0; walk < kRoutineWalks; ++walk) {
    // The empty lines that an earlier walk put in front are ordinary lines to this one.
    const bool& inRoutine = walks_[walk].inRoutine;
    const std::size_t emptyLines = wrapped.emptyLines.size();
    if (settings_.bodyTabs && inRoutine) {
      for (std::string& empty : wrapped.emptyLines) empty.insert(0, 1, '\t');
    }
    if ((candidate.flags & kWalks[walk].flag) != 0) VisitRoutineLine(walk, line);
    if (settings_.bodyTabs && inRoutine) IndentInside(wrapped, emptyLines);
    if (inRoutine) ++wrapped.bodyTabs;
  }
  return std::move(wrapped);
}

/// The body TAB of a candidate line. Lines that begin a routine's mark are exempt; where an empty line was put in front
/// of a header, that line is the one that gets the TAB.
void RoutineWalks::IndentInside(WrappedLine& line, std::size_t emptyLines) const {
  const bool wrapped = settings_.numbered ? line.routine.value != 0 : line.before.starts_with(HeaderLineOpen);
  if (line.emptyLines.size() > emptyLines) {
    line.emptyLines.back().insert(0, 1, '\t');
  } else if (!wrapped) {
    line.before.insert(0, 1, '\t');
  }
}

void RoutineWalks::VisitRoutineLine(std::size_t walk, Line& line) {
  if (!walks_[walk].inRoutine) {
    BeginRoutine(walk, line);
    return;
  }
  Wrap(walk, line.wrapped, false);
  walks_[walk].inRoutine = false;
}

void RoutineWalks::BeginRoutine(std::size_t walk, Line& line) {
  ++walks_[walk].last.value;
  const std::uint16_t flags = line.candidate.flags;
  const int kind = KindOf(flags, kWalks[walk].baseKind);
  if (kind == 0) return;
  if (settings_.numbered) {
    if (++described_ > kMostRoutines) throw files::Failure(ModuleReason::kManyRoutines);
    walks_[walk].routines.push_back(Describe(line, kind));
    walks_[walk].routines.back().number = walks_[walk].last;
  }
  Wrap(walk, line.wrapped, true);
  if (settings_.emptyLineBefore) line.wrapped.emptyLines.emplace_back();
  walks_[walk].inRoutine = (flags & kHasDeclare) == 0;
}

void RoutineWalks::Wrap(std::size_t walk, WrappedLine& line, bool isStart) {
  if (settings_.numbered) {
    if (line.routine.value != 0) {
      line.before.insert(0, LinePrefix(line.routine, line.isStart));
      numbersInText_ = true;
    }
    line.routine = walks_[walk].last;
    line.walk = walk;
    line.isStart = isStart;
  }
  line.before.insert(0, HeaderLineOpen);
  line.after += HeaderLineClose;
}

codedb::RoutineRecord RoutineWalks::Describe(const Line& line, int kind) const {
  const WrappedLine& wrapped = line.wrapped;
  const std::uint16_t flags = line.candidate.flags;
  const std::string guarded = GuardedLine(line);
  std::string whole = wrapped.routine.value != 0 ? LinePrefix(wrapped.routine, wrapped.isStart) : std::string();
  whole.append(wrapped.before).append(guarded).append(wrapped.after);
  static const std::string kLibMark = std::string(text::KeywordOpen) + "Lib";
  codedb::RoutineRecord routine;
  routine.kind = kind;
  routine.visibility = VisibilityOf(flags);
  routine.headerLines = CountContinuations(guarded) + 1;
  routine.name = NameIn(whole, (flags & kHasDeclare) != 0 ? std::string_view(kLibMark) : "(");
  return routine;
}

/// The marked line with its stand-ins: from the text when they are there or when it has none.
std::string RoutineWalks::GuardedLine(const Line& line) const {
  const std::string_view code = line.candidate.code;
  if (!guarded_ && (code.find('"') != std::string_view::npos || code.find('\r') != std::string_view::npos)) {
    return MarkLineGuarded(code, line.candidate.closed);
  }
  return std::string(line.marked);
}

}  // namespace quillmate::analysis
