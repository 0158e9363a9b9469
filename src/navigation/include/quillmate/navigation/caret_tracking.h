#pragma once

#include <optional>
#include <string>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_view.h>

namespace quillmate::navigation {

/// Keeps the routine panel of the status bar in step with the caret. The database is asked only when the caret has
/// come to another line, whichever view that line is in. Both calls throw codedb::DatabaseError.
class CaretTracker {
 public:
  /// After a key or the left mouse button was released in a code view: the text for the panel, which is empty outside
  /// of routines; nothing when the panel keeps what it shows, so also in an empty view. Not to be called before a
  /// project is loaded.
  std::optional<std::string> Track(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index);
  /// After the caret was moved by the program: the text for the panel, moved or not.
  std::string Refresh(codedb::CodeDatabase& database, const CodeView& view, codedb::ViewIndex index);
  /// After the caret was moved by the program and the panel was filled otherwise: the next call of Track asks the
  /// database in any case.
  void Forget() noexcept { lastLine_ = {}; }

 private:
  codedb::Line lastLine_;  // 0: no line has been reported yet
};

}  // namespace quillmate::navigation
