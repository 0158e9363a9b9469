#include <algorithm>
#include <utility>

#include <quillmate/text/name_table.h>

namespace quillmate::text {
namespace {

constexpr std::size_t kFirstSlots = 1024;

/// The upper half of the product depends on every character.
std::uint32_t Fold(std::uint64_t hash) noexcept { return static_cast<std::uint32_t>((hash * kHashFactor) >> 32U); }

bool SameName(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, [](char x, char y) { return ToLower(x) == ToLower(y); });
}

}  // namespace

std::uint64_t HashOf(std::string_view name) noexcept {
  std::uint64_t hash = 0;
  for (const char c : name) hash = AppendToHash(hash, c);
  return hash;
}

NameTable::NameTable() : slots_(kFirstSlots) {}

int NameTable::Add(std::string_view name) {
  if (names_.size() * 4 >= slots_.size()) Grow();
  const std::uint32_t hash = Fold(HashOf(name));
  Slot& slot = slots_[SlotOf(hash, name)];
  if (slot.name == kNone) {
    slot = {hash, static_cast<int>(names_.size())};
    names_.emplace_back(name);
  }
  return slot.name;
}

int NameTable::Find(std::uint64_t hash, std::string_view name) const noexcept {
  return slots_[SlotOf(Fold(hash), name)].name;
}

std::size_t NameTable::SlotOf(std::uint32_t hash, std::string_view name) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].name != kNone) {
    if (slots_[at].hash == hash && SameName(names_[static_cast<std::size_t>(slots_[at].name)], name)) break;
    at = (at + 1) & mask;
  }
  return at;
}

void NameTable::Grow() {
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.name == kNone) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].name != kNone) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

}  // namespace quillmate::text
