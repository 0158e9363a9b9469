#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/text/name_table.h>

namespace quillmate::analysis {

/// The names of all candidates, found by the words of the code. Names are Windows-1252 and never empty.
class CandidateNames {
 public:
  /// Names that agree, without regard to case, in the identifier that they begin with, which is mostly all of the name.
  struct Group {
    /// Numbers of the names that end with that word, and of those that go on after it (with a type suffix).
    std::vector<int> whole;
    std::vector<int> longer;
  };

  /// Number of the name, 0 for the first; the same for the same spelling.
  int Add(std::string_view name);
  std::size_t Count() const noexcept { return names_.size(); }
  const std::string& Name(int number) const { return names_[static_cast<std::size_t>(number)]; }

  /// The group of a word with its hash; nullptr when no name begins with it.
  const Group* Find(std::uint64_t hash, std::string_view word) const { return GroupAt(words_.Find(hash, word)); }
  /// A word that is longer than any name's, or whose first character begins none, need not be looked for.
  std::size_t Longest() const noexcept { return longest_; }
  bool Begins(char first) const noexcept { return begins_[text::ToLower(first)]; }

  /// Names that begin with no identifier, by their first character.
  const std::vector<int>& Odd(char first) const { return odd_[static_cast<unsigned char>(first)]; }
  bool HasOdd() const noexcept { return hasOdd_; }

 private:
  const Group* GroupAt(int group) const { return group < 0 ? nullptr : &groups_[static_cast<std::size_t>(group)]; }
  int AddTo(std::vector<int>& numbers, std::string_view name);
  int AddGroup(std::string_view word);

  std::vector<std::string> names_;
  text::NameTable words_;
  std::vector<Group> groups_;  // by number of the word
  std::array<std::vector<int>, 256> odd_;
  std::array<bool, 256> begins_{};
  std::size_t longest_ = 0;
  bool hasOdd_ = false;
};

}  // namespace quillmate::analysis
