#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>
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
    /// The word is in a string literal of some module.
    bool inLiteral = false;
    /// `mod_num` of the last module whose code holds the word; 0 when none did.
    codedb::ModuleNumber lastModule;
  };

  /// Number of the name, 0 for the first; the same for the same spelling.
  int Add(std::string_view name);
  std::size_t Count() const noexcept { return names_.size(); }
  const std::string& Name(int number) const { return names_[static_cast<std::size_t>(number)].text; }
  /// The group of a name; nullptr when it begins with no identifier.
  Group* GroupOf(int number) { return GroupAt(names_[static_cast<std::size_t>(number)].group); }

  /// The group of a word with its hash; nullptr when no name begins with it.
  Group* Find(std::uint64_t hash, std::string_view word) { return GroupAt(words_.Find(hash, word)); }
  /// A word that is longer than any name's, or whose first character begins none, need not be looked for.
  std::size_t Longest() const noexcept { return longest_; }
  bool Begins(char first) const noexcept { return begins_[text::ToLower(first)]; }

  /// Names that begin with no identifier, by their first character.
  const std::vector<int>& Odd(char first) const { return odd_[static_cast<unsigned char>(first)]; }
  bool HasOdd() const noexcept { return hasOdd_; }

 private:
  struct Entry {
    std::string text;
    int group = -1;
  };
  Group* GroupAt(int group) { return group < 0 ? nullptr : &groups_[static_cast<std::size_t>(group)]; }
  int AddTo(std::vector<int>& numbers, std::string_view name, int group);
  int AddGroup(std::string_view word);

  std::vector<Entry> names_;
  text::NameTable words_;
  std::vector<Group> groups_;  // by number of the word
  std::array<std::vector<int>, 256> odd_;
  std::array<bool, 256> begins_{};
  std::size_t longest_ = 0;
  bool hasOdd_ = false;
};

}  // namespace quillmate::analysis
