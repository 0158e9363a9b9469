#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::analysis {

/// A rolling hash: the hash of a part follows from those of the text up to its two ends. `folded` is the next character
/// without its case; the hash of the empty text is 0.
constexpr std::uint64_t kHashFactor = 0x9E3779B97F4A7C15U;
constexpr std::uint64_t AppendToHash(std::uint64_t hash, unsigned char folded) noexcept {
  return hash * kHashFactor + folded;
}

/// The names of all candidates, found by the words of the code. Names are Windows-1252 and never empty.
class NameTable {
 public:
  /// Names that agree, without regard to case, in the identifier that they begin with, which is mostly all of the name.
  struct Group {
    std::string word;
    /// Numbers of the names that end with that word, and of those that go on behind it (with a type suffix).
    std::vector<int> whole;
    std::vector<int> longer;
    /// The word stands in a string literal of some module.
    bool inLiteral = false;
    /// `mod_num` of the last module whose code holds the word; 0 when none did.
    int lastModule = 0;
  };

  NameTable();

  /// Number of the name, 0 for the first; the same for the same spelling.
  int Add(std::string_view name);
  std::size_t Count() const noexcept { return names_.size(); }
  const std::string& Name(int number) const { return names_[static_cast<std::size_t>(number)].text; }
  /// The group of a name; nullptr when it begins with no identifier.
  Group* GroupOf(int number);

  /// The group of a word with its hash; nullptr when no name begins with it.
  Group* Find(std::uint64_t hash, std::string_view word);
  /// A word that is longer than any name's, or whose first character (without its case) begins none, need not be looked
  /// for.
  std::size_t Longest() const noexcept { return longest_; }
  bool Begins(unsigned char folded) const noexcept { return begins_[folded]; }

  /// Names that begin with no identifier, by their first character.
  const std::vector<int>& Odd(char first) const { return odd_[static_cast<unsigned char>(first)]; }
  bool HasOdd() const noexcept { return hasOdd_; }

 private:
  struct Entry {
    std::string text;
    int group = -1;
  };
  struct Slot {
    std::uint64_t hash = 0;
    int group = -1;
  };
  int AddTo(std::vector<int>& numbers, std::string_view name, int group);
  int FindOrAddGroup(std::string_view word);
  Slot& SlotOf(std::uint64_t hash, std::string_view word);
  void Grow();

  std::vector<Entry> names_;
  std::vector<Group> groups_;
  std::vector<Slot> slots_;  // a power of two of them, at most half of them taken
  std::array<std::vector<int>, 256> odd_;
  std::array<bool, 256> begins_{};
  std::size_t longest_ = 0;
  bool hasOdd_ = false;
};

}  // namespace quillmate::analysis
