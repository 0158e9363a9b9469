#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_view.h>

/// Which routine a line is in.
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

/// Keeps the routine panel of the status bar in step with the caret. The database is asked only when the caret has
/// come to another line, whichever view that line is in. Both calls throw files::Failure.
class CaretTracker {
 public:
  /// After a key or the left mouse button was released in a code view: the text for the panel, which is empty outside
  /// of routines; nothing when the panel keeps what it shows, so also in an empty view. Not to be called before a
  /// project is loaded.
  std::optional<std::string> Track(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index);
  /// After the caret was moved by the program: the text for the panel, moved or not.
  std::string Refresh(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index);
  /// After the caret was moved by the program and the panel was filled otherwise: the next call of Track asks the
  /// database.
  void Forget() noexcept { lastLine_ = {}; }

 private:
  codedb::Line lastLine_;  // 0: no line has been reported yet
};

}  // namespace quillmate::navigation
