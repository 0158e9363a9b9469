#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include <quillmate/codedb/numbers.h>

namespace quillmate::navigation {

/// A place that the user has visited.
struct Place {
  codedb::ViewIndex view;
  /// 0-based offset in the view's text.
  std::size_t caret = 0;
  /// What the status bar showed as module and routine, in the caller's encoding.
  std::string module;
  std::string routine;
  /// Characters that were selected there. Where it is missing the place stands for its line.
  std::optional<std::size_t> selected{};
};

/// The routine history: 30 places, a position in it, and whether the panels "<<" and ">>" (and their menu twins) are
/// enabled. Back and Next obey the bounds of the list alone: whoever calls them with a disabled panel moves on, also to
/// places that a later visit has cut off.
class RoutineHistory {
 public:
  static constexpr std::size_t kPlaces = 30;

  /// Adds a place after the current one; the oldest place is lost when the list is full. Later places are cut off.
  void Push(Place place);

  /// Step to the earlier or later place. nullptr when there is nothing to show: at the end of the list, where the
  /// position stays, or on a place that was never filled, where the position has moved all the same.
  const Place* Back();
  const Place* Next();

  /// The current place becomes another one, so that Back returns to where a jump began. An empty history gets it as its
  /// first place.
  void ReplaceCurrent(Place place);

  /// Forgets every place: those of a project are of no use in another one.
  void Clear() { *this = {}; }

  bool BackEnabled() const noexcept { return backEnabled_; }
  bool NextEnabled() const noexcept { return nextEnabled_; }
  /// Number of the current place, 1 to kPlaces; 0 while the history is empty.
  std::size_t Position() const noexcept { return position_; }
  /// Number of the newest place that Next may reach.
  std::size_t Last() const noexcept { return last_; }

 private:
  struct Entry {
    bool filled = false;
    Place place;
  };
  const Place* Show();

  std::array<Entry, kPlaces + 1> entries_;  // entry 0 stays unused
  std::size_t position_ = 0;
  std::size_t last_ = 0;
  bool backEnabled_ = false;
  bool nextEnabled_ = false;
};

}  // namespace quillmate::navigation
