#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/code_database.h>

namespace quillmate::navigation {

/// Tells for line after line what CodeDatabase::RoutineAt tells for one, without asking the database again.
class LineWalk {
 public:
  /// `routines` as CodeDatabase::RoutinesWithLines gives them; they must outlive the walk.
  explicit LineWalk(const std::vector<codedb::RoutineRecord>& routines);

  /// Index of the first routine that the line is in; -1 when there is none. Lines must not descend.
  int At(codedb::Line line);

 private:
  const std::vector<codedb::RoutineRecord>& routines_;
  std::vector<int> byStart_;  // indices of routines, by start line
  std::size_t next_ = 0;      // the first of them that begins after the line
  std::vector<int> begun_;    // heap of the others, the lowest index on top
};

}  // namespace quillmate::navigation
