#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/text/characters.h>

namespace quillmate::text {

/// A rolling hash that ignores case: the hash of a part follows from those of the text up to its two ends. The hash of
/// the empty text is 0.
inline constexpr std::uint64_t kHashFactor = 0x9E3779B97F4A7C15U;
constexpr std::uint64_t AppendToHash(std::uint64_t hash, char c) noexcept { return hash * kHashFactor + ToLower(c); }
std::uint64_t HashOf(std::string_view name) noexcept;

/// Numbers names from 0. Windows-1252; case does not count, that of umlauts neither. Adding and finding cost the length
/// of the name.
class NameTable {
 public:
  static constexpr int kNone = -1;

  NameTable();

  /// The name's number; a new one when it is not in the table.
  int Add(std::string_view name);
  /// kNone when there is no such name. `hash` is the name's hash.
  int Find(std::string_view name) const noexcept { return Find(HashOf(name), name); }
  int Find(std::uint64_t hash, std::string_view name) const noexcept;
  std::size_t Size() const noexcept { return names_.size(); }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    int name = kNone;
  };

  /// Where the name is, or the free slot where it belongs.
  std::size_t SlotOf(std::uint32_t hash, std::string_view name) const noexcept;
  void Grow();

  /// A power of two, at most a quarter of them taken.
  std::vector<Slot> slots_;
  /// As they were added first.
  std::vector<std::string> names_;
};

}  // namespace quillmate::text
