#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <quillmate/symbols/kinds.h>

namespace quillmate::symbols {

/// Names are compared across modules by the 64 bits of their hash.
using NameHash = std::uint64_t;

/// A key for a name inside something: a project, an enum, a space of its own.
constexpr NameHash Within(NameHash name, std::uint64_t owner) noexcept {
  std::uint64_t mixed = name ^ ((owner + 1) * 0x9E3779B97F4A7C15U);
  mixed = (mixed ^ (mixed >> 29)) * 0xBF58476D1CE4E5B9U;
  return mixed ^ (mixed >> 32);
}

/// Keys that are hashes already to numbers, open addressing. Names of equal keys count as one.
class HashTable {
 public:
  /// To be called once, with at least as many names as will be added.
  void Reserve(std::size_t names) {
    std::size_t slots = 8;
    while (slots < names * 2) slots *= 2;
    slots_.assign(slots, Slot{0, kNone});
    mask_ = slots - 1;
  }

  /// kNone when there is none.
  Index Find(NameHash key) const noexcept {
    if (slots_.empty()) return kNone;
    for (std::size_t slot = key & mask_;; slot = (slot + 1) & mask_) {
      if (slots_[slot].value == kNone) return kNone;
      if (slots_[slot].key == key) return slots_[slot].value;
    }
  }

  /// The value of a key, kNone for a new one; the caller sets it to something else before the next call.
  Index& operator[](NameHash key) noexcept {
    std::size_t slot = key & mask_;
    while (slots_[slot].value != kNone && slots_[slot].key != key) slot = (slot + 1) & mask_;
    slots_[slot].key = key;
    return slots_[slot].value;
  }

  /// In an order that depends on the keys alone.
  template <typename Visit>
  void ForEach(Visit visit) const {
    for (const Slot& slot : slots_) {
      if (slot.value != kNone) visit(slot.key, slot.value);
    }
  }

  /// The same for a table whose size nobody knew: it grows.
  Index& Grow(NameHash key) {
    if (slots_.empty() || grown_ * 2 >= slots_.size()) {
      std::vector<Slot> old;
      old.swap(slots_);
      Reserve(grown_ * 2 + 4);
      for (const Slot& slot : old) {
        if (slot.value != kNone) (*this)[slot.key] = slot.value;
      }
    }
    Index& value = (*this)[key];
    grown_ += value == kNone;
    return value;
  }

 private:
  struct Slot {
    NameHash key;
    Index value;
  };
  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t grown_ = 0;  ///< names that Grow added
};

}  // namespace quillmate::symbols
