#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/analysis/scanner.h>

#include "line_marker_p.h"

/// Second half of a scan: tells routine headers from end lines, numbers the routines and wraps their lines.
///
/// Subs, Functions and Properties are walked side by side, each kind with a state of its own, and numbered one kind
/// after the other. A line that holds words of two kinds is met by both walks and wrapped twice.
namespace quillmate::analysis {

inline constexpr std::size_t kRoutineWalks = 3;
using WalkNumbers = std::array<codedb::RoutineNumber, kRoutineWalks>;

/// What the walks make of a candidate line. The final line is `before` + marked line + `after`.
struct WrappedLine {
  std::string before;
  std::string after;
  /// Indentation of the empty lines put in front of the line, first to last.
  std::vector<std::string> emptyLines;
  /// Set when the line begins or ends a routine of the index: the routine of its outermost wrapping, and its walk.
  codedb::RoutineNumber routine;
  std::size_t walk = 0;
  bool isStart = false;
  /// TABs of the ordinary lines after this line, up to the next candidate.
  int bodyTabs = 0;
};

struct WalkSettings {
  bool numbered = false;  // indexing mode: numbers and rows
  bool bodyTabs = false;
  bool emptyLineBefore = false;
};

/// The three walks over the candidates of a module.
class RoutineWalks {
 public:
  /// `guarded` tells whether the stand-ins are still in the marked-up lines; each walk counts on from its number in
  /// `before`.
  RoutineWalks(bool guarded, const WalkSettings& settings, const WalkNumbers& before);

  /// The candidates in their order; `marked` is the line marked up. Throws files::Failure at the first routine that is
  /// one too many.
  WrappedLine Visit(const RoutineCandidate& candidate, std::string_view marked);

  /// The routines of a walk in the order of their numbers, which go on from its number in `before`.
  std::vector<codedb::RoutineRecord>& Routines(std::size_t walk) noexcept { return walks_[walk].routines; }
  /// The last number that a walk has given, rows or not.
  codedb::RoutineNumber Last(std::size_t walk) const noexcept { return walks_[walk].last; }
  /// True when a line that is wrapped twice keeps the number that it got first.
  bool NumbersInText() const noexcept { return numbersInText_; }

 private:
  struct Walk {
    codedb::RoutineNumber last;
    bool inRoutine = false;
    std::vector<codedb::RoutineRecord> routines;
  };
  /// The line that is being visited.
  struct Line {
    const RoutineCandidate& candidate;
    std::string_view marked;
    WrappedLine wrapped{};
  };

  void VisitRoutineLine(std::size_t walk, Line& line);
  void BeginRoutine(std::size_t walk, Line& line);
  void Wrap(std::size_t walk, WrappedLine& line, bool isStart);
  void IndentInside(WrappedLine& line, std::size_t emptyLines) const;
  codedb::RoutineRecord Describe(const Line& line, int kind) const;
  std::string GuardedLine(const Line& line) const;

  bool guarded_;
  WalkSettings settings_;
  bool numbersInText_ = false;
  std::int32_t described_ = 0;
  std::array<Walk, kRoutineWalks> walks_;
};

}  // namespace quillmate::analysis
