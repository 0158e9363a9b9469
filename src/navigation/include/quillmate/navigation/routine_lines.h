#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/code_database.h>

namespace quillmate::navigation {

/// A routine with the codes of quillmate/codedb/codes.h and its 1-based lines in the stored text.
struct RoutineLines {
  std::int64_t number = 0;
  /// Windows-1252.
  std::string name;
  int kind = 0;
  int visibility = 0;
  long start = 0;
  long end = 0;
};

/// The routines of a module that have lines, in the order in which the database returns those that lie at a line.
/// Throws codedb::DatabaseError.
std::vector<RoutineLines> ReadRoutineLines(codedb::CodeDatabase& database, int moduleNumber);

/// Answers for line after line what RoutineAtLine answers for one, without asking the database again.
class LineWalk {
 public:
  /// `routines` as ReadRoutineLines gives them; they must outlive the walk.
  explicit LineWalk(const std::vector<RoutineLines>& routines);

  /// Index of the first routine that the line lies in; -1 when there is none. Lines must not descend.
  int At(long line);

 private:
  const std::vector<RoutineLines>& routines_;
  std::vector<int> byStart_;  // indices of routines, by start line
  std::size_t next_ = 0;      // the first of them that begins behind the line
  std::vector<int> begun_;    // heap of the others, the lowest index on top
};

}  // namespace quillmate::navigation
