#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Names on the way into files, anchors and links.
namespace quillmate::output {

/// Makes names for files and anchors: ASCII letters, digits, "-" and "_", at most 80 of a name's characters, unique
/// regardless of case. Umlauts are spelled out ("ä" as "ae"), the second of two equal names gets "-2" behind it.
class FileNames {
 public:
  /// `name` is Windows-1252.
  std::string Make(std::string_view name);

 private:
  /// Lower-case names that are taken, and the number that the next equal name begins to try with.
  std::unordered_map<std::string, int> taken_;
};

/// Numbers names from 0. Windows-1252; case does not count, that of umlauts neither. Adding and finding cost the length
/// of the name.
class NameTable {
 public:
  static constexpr int kNone = -1;

  /// `most` is the greatest number of names that will be added.
  explicit NameTable(std::size_t most);

  int Add(std::string_view name);
  /// kNone when there is no such name.
  int Find(std::string_view name) const noexcept;
  std::size_t Size() const noexcept { return names_.size(); }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    int name = kNone;
  };

  /// Where the name is, or the free slot where it belongs.
  std::size_t SlotOf(std::string_view name, std::uint32_t hash) const noexcept;

  /// A power of two, at most a quarter of them taken.
  std::vector<Slot> slots_;
  /// Lower case.
  std::vector<std::string> names_;
};

}  // namespace quillmate::output
