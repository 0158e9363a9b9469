#include "unused_names.h"

#include <algorithm>
#include <utility>

#include <quillmate/text/characters.h>

namespace quillmate::analysis {
namespace {

constexpr std::size_t kFirstSlots = 1024;

unsigned char Fold(char c) noexcept { return text::ToLower(static_cast<unsigned char>(c)); }

std::uint64_t HashOf(std::string_view word) noexcept {
  std::uint64_t hash = 0;
  for (const char c : word) hash = AppendToHash(hash, Fold(c));
  return hash;
}

bool EqualsFolded(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, [](char x, char y) { return Fold(x) == Fold(y); });
}

std::string_view IdentifierInFront(std::string_view name) {
  const auto isIdentifier = [](char c) { return text::IsIdentifierCharacter(static_cast<unsigned char>(c)); };
  return name.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(name, isIdentifier) - name.begin()));
}

}  // namespace

NameTable::NameTable() : slots_(kFirstSlots) {}

int NameTable::Add(std::string_view name) {
  const std::string_view word = IdentifierInFront(name);
  if (word.empty()) {
    hasOdd_ = true;
    return AddTo(odd_[static_cast<unsigned char>(name.front())], name, -1);
  }
  const int group = FindOrAddGroup(word);
  Group& found = groups_[static_cast<std::size_t>(group)];
  return AddTo(word.size() == name.size() ? found.whole : found.longer, name, group);
}

NameTable::Group* NameTable::GroupOf(int number) {
  const int group = names_[static_cast<std::size_t>(number)].group;
  return group < 0 ? nullptr : &groups_[static_cast<std::size_t>(group)];
}

NameTable::Group* NameTable::Find(std::uint64_t hash, std::string_view word) {
  const int group = SlotOf(hash, word).group;
  return group < 0 ? nullptr : &groups_[static_cast<std::size_t>(group)];
}

int NameTable::AddTo(std::vector<int>& numbers, std::string_view name, int group) {
  for (const int number : numbers) {
    if (Name(number) == name) return number;
  }
  const int number = static_cast<int>(names_.size());
  names_.push_back({std::string(name), group});
  numbers.push_back(number);
  return number;
}

int NameTable::FindOrAddGroup(std::string_view word) {
  if (groups_.size() * 2 >= slots_.size()) Grow();
  const std::uint64_t hash = HashOf(word);
  Slot& slot = SlotOf(hash, word);
  if (slot.group < 0) {
    slot = {hash, static_cast<int>(groups_.size())};
    groups_.emplace_back().word = word;
    longest_ = std::max(longest_, word.size());
    begins_[Fold(word.front())] = true;
  }
  return slot.group;
}

/// The slot that holds the word, or else the free one where it would be.
NameTable::Slot& NameTable::SlotOf(std::uint64_t hash, std::string_view word) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = (hash * kHashFactor) >> 32U;; ++i) {
    Slot& slot = slots_[i & mask];
    if (slot.group < 0) return slot;
    if (slot.hash == hash && EqualsFolded(groups_[static_cast<std::size_t>(slot.group)].word, word)) return slot;
  }
}

void NameTable::Grow() {
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
  for (const Slot& slot : old) {
    if (slot.group >= 0) SlotOf(slot.hash, groups_[static_cast<std::size_t>(slot.group)].word) = slot;
  }
}

}  // namespace quillmate::analysis
