#include <algorithm>
#include <utility>

#include <quillmate/navigation/history.h>

namespace quillmate::navigation {

void RoutineHistory::Push(Place place) {
  if (position_ == kPlaces) {
    std::move(entries_.begin() + 2, entries_.end(), entries_.begin() + 1);
  } else {
    ++position_;
  }
  entries_[position_] = {true, std::move(place)};
  last_ = position_;
  nextEnabled_ = false;
  backEnabled_ = position_ >= 2;
}

const Place* RoutineHistory::Back() {
  if (position_ < 2) return nullptr;
  --position_;
  return Show();
}

const Place* RoutineHistory::Next() {
  if (position_ >= kPlaces) return nullptr;
  ++position_;
  return Show();
}

const Place* RoutineHistory::Show() {
  const Entry& entry = entries_[position_];
  if (!entry.filled) return nullptr;
  backEnabled_ = position_ > 1;
  nextEnabled_ = position_ < last_;
  return &entry.place;
}

void RoutineHistory::ReplaceCurrent(Place place) {
  if (position_ == 0) {
    Push(std::move(place));
  } else {
    entries_[position_] = {true, std::move(place)};
  }
}

}  // namespace quillmate::navigation
