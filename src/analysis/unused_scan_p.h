#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "unused_names_p.h"

namespace quillmate::analysis {

/// Which letters part a name from what is around it. Only "Z" is no letter, and digits only after a name.
bool MayStandBefore(char c) noexcept;
bool MayStandBehind(char c) noexcept;

/// A place where a name is, whatever is beside it. Offsets in the module's text.
struct Occurrence {
  int name = -1;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
};

/// Finds the names of a table in one module after the other, in one pass over the text however many names there are.
///
/// A name that counts begins and ends where a word of identifier characters does or, within one, beside a "Z" or after
/// a digit: at a joint. Setting a name apart from what is around it makes no places where others may begin or end that
/// were no joints before.
class NameScan {
 public:
  /// `names` is complete.
  explicit NameScan(const CandidateNames& names);

  /// All occurrences that begin and end at joints; valid until the next call.
  const std::vector<Occurrence>& Scan(std::string_view code);

 private:
  std::size_t ScanWord(std::size_t start);
  void LookUpWord(std::uint64_t hash, std::size_t start, std::size_t end);
  void LookUpParts(std::size_t start, std::size_t end);
  void Collect(const CandidateNames::Group& group, std::size_t start, std::size_t end, bool wordEnds);
  void CollectAt(std::size_t start, const std::vector<int>& names);

  const CandidateNames& names_;
  std::vector<std::uint64_t> powers_;
  std::string_view code_;
  std::vector<Occurrence> occurrences_;
  std::vector<std::uint64_t> hashes_;  // of all beginnings of a word
  std::vector<std::size_t> joints_;
};

}  // namespace quillmate::analysis
