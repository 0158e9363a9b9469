#include <algorithm>
#include <cstddef>
#include <unordered_map>

#include <quillmate/symbols/line_difference.h>

namespace quillmate::symbols {
namespace {

using Signed = std::int64_t;

/// Two stretches that are still to be compared: [oldFirst, oldEnd) with [newFirst, newEnd).
struct Box {
  std::uint32_t oldFirst, oldEnd, newFirst, newEnd;
};

struct Place {
  std::uint32_t oldAt, newAt;
};

/// Elements that the other side has too, with their places; the others differ for certain.
struct Reduced {
  std::vector<std::uint32_t> ids;
  std::vector<std::uint32_t> places;
};

/// How often each number is on either side; the numbers are small where lines were numbered, so an array does.
struct Counts {
  std::vector<std::uint32_t> oldCount, newCount;
};

Counts CountIds(std::span<const std::uint32_t> oldIds, std::span<const std::uint32_t> newIds, std::uint32_t count) {
  Counts counts{std::vector<std::uint32_t>(count), std::vector<std::uint32_t>(count)};
  for (const std::uint32_t id : oldIds) ++counts.oldCount[id];
  for (const std::uint32_t id : newIds) ++counts.newCount[id];
  return counts;
}

/// Finds the differing elements of two sequences and marks them.
class Comparer {
 public:
  Comparer(std::span<const std::uint32_t> oldIds, std::span<const std::uint32_t> newIds)
      : oldChanged_(oldIds.size()), newChanged_(newIds.size()) {
    std::uint32_t count = 0;
    for (const auto& side : {oldIds, newIds}) {
      for (const std::uint32_t id : side) count = std::max(count, id + 1);
    }
    counts_ = CountIds(oldIds, newIds, count);
    Reduce(oldIds, counts_.newCount, old_, oldChanged_);
    Reduce(newIds, counts_.oldCount, new_, newChanged_);
  }

  void Run() {
    const std::size_t diagonals = old_.ids.size() + new_.ids.size() + 3;
    forward_.resize(diagonals);
    backward_.resize(diagonals);
    PushBoxes();
    while (!boxes_.empty()) {
      const Box box = boxes_.back();
      boxes_.pop_back();
      Compare(box);
    }
  }

  const std::vector<bool>& OldChanged() const noexcept { return oldChanged_; }
  const std::vector<bool>& NewChanged() const noexcept { return newChanged_; }

 private:
  static void Reduce(std::span<const std::uint32_t> ids, const std::vector<std::uint32_t>& others, Reduced& reduced,
                     std::vector<bool>& changed) {
    for (std::uint32_t at = 0; at < ids.size(); ++at) {
      if (others[ids[at]] == 0) {
        changed[at] = true;
      } else {
        reduced.ids.push_back(ids[at]);
        reduced.places.push_back(at);
      }
    }
  }

  /// Elements that are once on each side, in the longest row that keeps the order of both.
  std::vector<Place> Anchors() const {
    std::vector<std::uint32_t> newAt(counts_.newCount.size());
    for (std::uint32_t at = 0; at < new_.ids.size(); ++at) newAt[new_.ids[at]] = at;
    std::vector<Place> unique;
    for (std::uint32_t at = 0; at < old_.ids.size(); ++at) {
      const std::uint32_t id = old_.ids[at];
      if (counts_.oldCount[id] == 1 && counts_.newCount[id] == 1) unique.push_back({at, newAt[id]});
    }
    std::vector<std::uint32_t> ends;  // by length - 1: the one that a row of that length ends with best
    std::vector<std::uint32_t> before(unique.size(), kNoLine);
    for (std::uint32_t at = 0; at < unique.size(); ++at) {
      const auto longer = std::lower_bound(ends.begin(), ends.end(), unique[at].newAt,
                                           [&](std::uint32_t end, std::uint32_t y) { return unique[end].newAt < y; });
      if (longer != ends.begin()) before[at] = *(longer - 1);
      longer == ends.end() ? ends.push_back(at) : void(*longer = at);
    }
    std::vector<Place> row(ends.size());
    std::uint32_t at = ends.empty() ? kNoLine : ends.back();
    for (std::size_t i = row.size(); i-- > 0; at = before[at]) row[i] = unique[at];
    return row;
  }

  void PushBoxes() {
    Place last{0, 0};
    for (const Place& anchor : Anchors()) {
      boxes_.push_back({last.oldAt, anchor.oldAt, last.newAt, anchor.newAt});
      last = {anchor.oldAt + 1, anchor.newAt + 1};
    }
    boxes_.push_back({last.oldAt, static_cast<std::uint32_t>(old_.ids.size()), last.newAt,
                      static_cast<std::uint32_t>(new_.ids.size())});
  }

  void Mark(const Box& box) {
    for (std::uint32_t at = box.oldFirst; at < box.oldEnd; ++at) oldChanged_[old_.places[at]] = true;
    for (std::uint32_t at = box.newFirst; at < box.newEnd; ++at) newChanged_[new_.places[at]] = true;
  }

  void Compare(Box box) {
    const auto& a = old_.ids;
    const auto& b = new_.ids;
    while (box.oldFirst < box.oldEnd && box.newFirst < box.newEnd && a[box.oldFirst] == b[box.newFirst]) {
      ++box.oldFirst, ++box.newFirst;
    }
    while (box.oldFirst < box.oldEnd && box.newFirst < box.newEnd && a[box.oldEnd - 1] == b[box.newEnd - 1]) {
      --box.oldEnd, --box.newEnd;
    }
    if (box.oldFirst == box.oldEnd || box.newFirst == box.newEnd) return Mark(box);
    const Place cut = Cut(box);
    const Box first{box.oldFirst, cut.oldAt, box.newFirst, cut.newAt};
    const Box second{cut.oldAt, box.oldEnd, cut.newAt, box.newEnd};
    const auto isEmpty = [](const Box& part) { return part.oldFirst == part.oldEnd && part.newFirst == part.newEnd; };
    if (isEmpty(first) || isEmpty(second)) return Mark(box);
    boxes_.push_back(first);
    boxes_.push_back(second);
  }

  Signed& Forward(Signed diagonal) noexcept { return forward_[Slot(diagonal)]; }
  Signed& Backward(Signed diagonal) noexcept { return backward_[Slot(diagonal)]; }
  std::size_t Slot(Signed diagonal) const noexcept {
    return static_cast<std::size_t>(diagonal + static_cast<Signed>(new_.ids.size()) + 1);
  }

  /// The diagonals that a search has reached, those beyond the box left out.
  struct Reach {
    Signed low, high;
    void Widen(Signed least, Signed most, std::vector<Signed>& row, Signed outside, std::size_t slotOfZero) {
      const auto slot = [=](Signed diagonal) { return static_cast<std::size_t>(diagonal) + slotOfZero; };
      low > least ? void(row[slot(--low - 1)] = outside) : void(++low);
      high < most ? void(row[slot(++high + 1)] = outside) : void(--high);
    }
  };

  /// A place within the box that a shortest script goes through: the searches from both corners meet there. After
  /// kMostSteps steps, the furthest place that either has come to.
  Place Cut(const Box& box) {
    const Signed x0 = box.oldFirst, x1 = box.oldEnd, y0 = box.newFirst, y1 = box.newEnd;
    const Signed least = x0 - y1, most = x1 - y0;
    const Signed start = x0 - y0, goal = x1 - y1;
    const bool odd = ((start - goal) & 1) != 0;
    const std::size_t slotOfZero = Slot(0);
    Reach front{start, start}, back{goal, goal};
    Forward(start) = x0;
    Backward(goal) = x1;
    for (std::uint32_t step = 1;; ++step) {
      front.Widen(least, most, forward_, -1, slotOfZero);
      for (Signed k = front.high; k >= front.low; k -= 2) {
        const Signed x = Advance(k, x1, y1);
        if (odd && back.low <= k && k <= back.high && Backward(k) <= x) return At(x, k);
      }
      back.Widen(least, most, backward_, kFar, slotOfZero);
      for (Signed k = back.high; k >= back.low; k -= 2) {
        const Signed x = Retreat(k, x0, y0);
        if (!odd && front.low <= k && k <= front.high && x <= Forward(k)) return At(x, k);
      }
      if (step >= kMostSteps) return Furthest(box, front, back);
    }
  }

  Signed Advance(Signed k, Signed x1, Signed y1) {
    const Signed below = Forward(k - 1), above = Forward(k + 1);
    Signed x = below < above ? above : below + 1;
    while (x < x1 && x - k < y1 && old_.ids[static_cast<std::size_t>(x)] == new_.ids[static_cast<std::size_t>(x - k)]) {
      ++x;
    }
    return Forward(k) = x;
  }

  Signed Retreat(Signed k, Signed x0, Signed y0) {
    const Signed below = Backward(k - 1), above = Backward(k + 1);
    Signed x = below < above ? below : above - 1;
    while (x > x0 && x - k > y0 &&
           old_.ids[static_cast<std::size_t>(x - 1)] == new_.ids[static_cast<std::size_t>(x - k - 1)]) {
      --x;
    }
    return Backward(k) = x;
  }

  Place Furthest(const Box& box, const Reach& front, const Reach& back) {
    const Signed x0 = box.oldFirst, x1 = box.oldEnd, y0 = box.newFirst, y1 = box.newEnd;
    Signed bestFront = -1, frontX = x0, bestBack = -1, backX = x1, frontK = 0, backK = 0;
    for (Signed k = front.high; k >= front.low; k -= 2) {
      const Signed x = std::min(std::min(Forward(k), x1), y1 + k);
      if (x - x0 + x - k - y0 > bestFront) bestFront = x - x0 + x - k - y0, frontX = x, frontK = k;
    }
    for (Signed k = back.high; k >= back.low; k -= 2) {
      const Signed x = std::max(std::max(Backward(k), x0), y0 + k);
      if (x1 - x + y1 - (x - k) > bestBack) bestBack = x1 - x + y1 - (x - k), backX = x, backK = k;
    }
    return bestFront >= bestBack ? At(frontX, frontK) : At(backX, backK);
  }

  static Place At(Signed x, Signed k) { return {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(x - k)}; }

  static constexpr Signed kFar = Signed{1} << 40;

  std::vector<bool> oldChanged_, newChanged_;
  Counts counts_;
  Reduced old_, new_;
  std::vector<Signed> forward_, backward_;
  std::vector<Box> boxes_;
};

/// A stretch that only one side has may often be a few elements further down as well. There it is, unless it can be
/// joined to the one above: at the end a reader expects it.
void SlideDown(std::vector<Edit>& edits, std::span<const std::uint32_t> oldIds, std::span<const std::uint32_t> newIds) {
  const auto limit = [&](std::size_t i) {
    return i + 1 < edits.size() ? edits[i + 1].oldFirst : static_cast<std::uint32_t>(oldIds.size());
  };
  for (std::size_t i = 0; i < edits.size(); ++i) {
    Edit& edit = edits[i];
    if (edit.oldCount > 0 && edit.newCount > 0) continue;
    const bool deletes = edit.oldCount > 0;
    const auto& ids = deletes ? oldIds : newIds;
    const std::uint32_t count = deletes ? edit.oldCount : edit.newCount;
    std::uint32_t& first = deletes ? edit.oldFirst : edit.newFirst;
    // One element stays between this edit and the next, so that they never touch.
    while (edit.oldFirst + edit.oldCount + (i + 1 < edits.size() ? 1 : 0) < limit(i) && first + count < ids.size() &&
           ids[first] == ids[first + count]) {
      ++edit.oldFirst, ++edit.newFirst;
    }
  }
}

/// Numbers lines in the order in which they are met first.
class LineNumbers {
 public:
  std::vector<std::uint32_t> Number(std::span<const std::string_view> lines) {
    std::vector<std::uint32_t> ids;
    ids.reserve(lines.size());
    for (const std::string_view line : lines) {
      ids.push_back(known_.try_emplace(line, static_cast<std::uint32_t>(known_.size())).first->second);
    }
    return ids;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> known_;
};

}  // namespace

std::vector<Edit> Differences(std::span<const std::uint32_t> oldIds, std::span<const std::uint32_t> newIds) {
  std::size_t head = 0;
  while (head < oldIds.size() && head < newIds.size() && oldIds[head] == newIds[head]) ++head;
  if (head == oldIds.size() && head == newIds.size()) return {};
  Comparer comparer(oldIds.subspan(head), newIds.subspan(head));
  comparer.Run();
  std::vector<Edit> edits;
  const auto& oldChanged = comparer.OldChanged();
  const auto& newChanged = comparer.NewChanged();
  for (std::uint32_t x = 0, y = 0; x < oldChanged.size() || y < newChanged.size();) {
    Edit edit{x, 0, y, 0};
    while (x < oldChanged.size() && oldChanged[x]) ++x, ++edit.oldCount;
    while (y < newChanged.size() && newChanged[y]) ++y, ++edit.newCount;
    if (edit.oldCount + edit.newCount > 0) {
      edits.push_back(edit);
    } else {
      ++x, ++y;
    }
  }
  for (Edit& edit : edits) {
    edit.oldFirst += static_cast<std::uint32_t>(head);
    edit.newFirst += static_cast<std::uint32_t>(head);
  }
  SlideDown(edits, oldIds, newIds);
  return edits;
}

std::vector<Edit> LineDifferences(std::span<const std::string_view> oldLines,
                                  std::span<const std::string_view> newLines) {
  LineNumbers numbers;
  const std::vector<std::uint32_t> oldIds = numbers.Number(oldLines);
  return Differences(oldIds, numbers.Number(newLines));
}

}  // namespace quillmate::symbols
