#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/analysis/scanner.h>

#include "line_marker.h"

/// Second half of a scan: tells routine headers from end lines, numbers the routines and wraps their lines.
///
/// Subs, Functions and Properties are walked one after the other over the whole module, each walk with a state of its
/// own. A line that holds words of two kinds is met by both walks and wrapped twice.
namespace quillmate::analysis {

/// What the walks made of a candidate line. The final line is `before` + marked line + `after`.
struct WrappedLine {
  std::string before;
  std::string after;
  /// Indentation of the empty lines put in front of the line, first to last.
  std::vector<std::string> emptyLines;
  /// Set when the line begins or ends a routine of the index: the routine of its outermost wrapping.
  codedb::RoutineNumber routine;
  bool isStart = false;
  /// TABs of the ordinary lines behind this line, up to the next candidate.
  int bodyTabs = 0;
};

struct WalkSettings {
  bool numbered = false;  // indexing mode: numbers and rows
  bool bodyTabs = false;
  bool emptyLineBefore = false;
};

/// Runs the three walks over the candidates of a module.
class RoutineWalk {
 public:
  /// `code` is the text that `marked` was made of; `guarded` tells whether the stand-ins are still in the text.
  RoutineWalk(std::string_view code, const MarkedCode& marked, bool guarded, const WalkSettings& settings,
              codedb::RoutineNumber last);

  /// One for each candidate.
  const std::vector<WrappedLine>& Lines() const noexcept { return lines_; }
  std::vector<codedb::RoutineRecord>& Routines() noexcept { return routines_; }
  codedb::RoutineNumber Last() const noexcept { return last_; }
  /// True when a line that is wrapped twice keeps the number that it got first.
  bool NumbersInText() const noexcept { return numbersInText_; }

 private:
  void Walk(std::uint16_t kindFlag, int baseKind);
  void VisitRoutineLine(std::size_t index, int baseKind);
  void BeginRoutine(std::size_t index, int baseKind);
  void Wrap(WrappedLine& line, bool isStart);
  void IndentInside(WrappedLine& line, std::size_t emptyLines);
  codedb::RoutineRecord Describe(std::size_t index, int kind) const;
  std::string GuardedLine(const RoutineCandidate& candidate) const;

  std::string_view code_;
  const MarkedCode& marked_;
  bool guarded_;
  WalkSettings settings_;
  codedb::RoutineNumber last_;
  bool inRoutine_ = false;
  bool numbersInText_ = false;
  std::vector<WrappedLine> lines_;
  std::vector<codedb::RoutineRecord> routines_;
};

}  // namespace quillmate::analysis
