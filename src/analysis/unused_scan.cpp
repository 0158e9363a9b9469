#include <quillmate/text/characters.h>

#include "unused_scan_p.h"

namespace quillmate::analysis {
namespace {

struct Character {
  bool identifier = false;
  bool before = false;  // may be before a name
  bool behind = false;  // may be after a name
};

constexpr std::array<Character, 256> MakeCharacters() noexcept {
  std::array<Character, 256> characters{};
  for (unsigned code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    const bool identifier = text::IsIdentifierCharacter(c);
    const bool behind = !identifier || c == 'Z';
    characters[code] = {identifier, behind || (c >= '0' && c <= '9'), behind};
  }
  return characters;
}

constexpr std::array<Character, 256> kCharacters = MakeCharacters();

const Character& CharacterOf(char c) noexcept { return kCharacters[static_cast<unsigned char>(c)]; }

}  // namespace

bool MayStandBefore(char c) noexcept { return CharacterOf(c).before; }
bool MayStandBehind(char c) noexcept { return CharacterOf(c).behind; }

NameScan::NameScan(const CandidateNames& names) : names_(names), powers_(names.Longest() + 1, 1) {
  for (std::size_t i = 1; i < powers_.size(); ++i) powers_[i] = powers_[i - 1] * text::kHashFactor;
}

const std::vector<Occurrence>& NameScan::Scan(std::string_view code) {
  occurrences_.clear();
  code_ = code;
  for (std::size_t i = 0; i < code_.size();) {
    if (CharacterOf(code_[i]).identifier) {
      i = ScanWord(i);
    } else {
      if (names_.HasOdd()) CollectAt(i, names_.Odd(code_[i]));
      ++i;
    }
  }
  return occurrences_;
}

/// Answers where the word ends.
std::size_t NameScan::ScanWord(std::size_t start) {
  std::uint64_t hash = 0;
  bool inParts = false;
  bool joint = false;
  std::size_t end = start;
  for (; end < code_.size() && CharacterOf(code_[end]).identifier; ++end) {
    const Character& c = CharacterOf(code_[end]);
    hash = text::AppendToHash(hash, code_[end]);
    inParts = inParts || joint || (c.behind && end > start);
    joint = c.before;
  }
  LookUpWord(hash, start, end);
  if (inParts) LookUpParts(start, end);
  return end;
}

void NameScan::LookUpWord(std::uint64_t hash, std::size_t start, std::size_t end) {
  if (end - start > names_.Longest() || !names_.Begins(code_[start])) return;
  const CandidateNames::Group* const group = names_.Find(hash, code_.substr(start, end - start));
  if (group != nullptr) Collect(*group, start, end, true);
}

/// All parts between two joints but the whole word.
void NameScan::LookUpParts(std::size_t start, std::size_t end) {
  hashes_.assign(1, 0);
  joints_.assign(1, start);
  for (std::size_t i = start; i < end; ++i) {
    hashes_.push_back(text::AppendToHash(hashes_.back(), code_[i]));
    const std::size_t next = i + 1;
    if (next == end || MayStandBefore(code_[i]) || MayStandBehind(code_[next])) joints_.push_back(next);
  }
  for (std::size_t a = 0; a + 1 < joints_.size(); ++a) {
    const std::size_t from = joints_[a];
    if (!names_.Begins(code_[from])) continue;
    for (std::size_t b = a + 1; b < joints_.size() && joints_[b] - from <= names_.Longest(); ++b) {
      const std::size_t to = joints_[b];
      if (from == start && to == end) continue;
      const std::uint64_t hash = hashes_[to - start] - hashes_[from - start] * powers_[to - from];
      const CandidateNames::Group* const group = names_.Find(hash, code_.substr(from, to - from));
      if (group != nullptr) Collect(*group, from, to, to == end);
    }
  }
}

/// Adds the names of a group that are at `start`; the group's word ends at `end`.
void NameScan::Collect(const CandidateNames::Group& group, std::size_t start, std::size_t end, bool wordEnds) {
  const std::string_view word = code_.substr(start, end - start);
  for (const int name : group.whole) {
    if (names_.Name(name) == word) {
      occurrences_.push_back({name, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)});
    }
  }
  if (wordEnds) CollectAt(start, group.longer);
}

void NameScan::CollectAt(std::size_t start, const std::vector<int>& names) {
  for (const int name : names) {
    const std::string& sought = names_.Name(name);
    if (!code_.substr(start).starts_with(sought)) continue;
    occurrences_.push_back(
        {name, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(start + sought.size())});
  }
}

}  // namespace quillmate::analysis
