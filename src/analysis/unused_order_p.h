#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "unused_names_p.h"
#include "unused_scan_p.h"

namespace quillmate::analysis {

/// A name that is looked for when its turn has come.
struct Turn {
  /// Number in the table.
  int name = -1;
  bool referenced = false;
};

/// Settles which occurrences are references, name after name, in one module after the other.
///
/// Each reference found is put between two markers in the text, which changes what the later names meet: there is now a
/// bar on both sides of it, a longer name that held it is interrupted, and the markers themselves hold letters that are
/// taken for the names "v" and "w" and then are put between markers, too.
class SearchOrder {
 public:
  /// `publics` are looked for in every module, before its private names. Both must outlive this.
  SearchOrder(const CandidateNames& names, std::vector<Turn>& publics);

  /// Marks what the module references. `occurrences` are those of all names of the table in its `code`.
  void Take(std::string_view code, const std::vector<Occurrence>& occurrences, std::vector<Turn>& privates);

 private:
  /// The turns of one name: indices in the public list and, in the present module, after those in the private one.
  struct TurnsOfName {
    int publicTurn = -1;
    std::vector<int> privateTurns;
  };
  /// An occurrence in a name's turn.
  struct Attempt {
    int turn;
    std::uint32_t start;
    std::uint32_t end;
  };

  void SetPrivates(std::vector<Turn>& privates);
  void CollectAttempts(const std::vector<Occurrence>& occurrences);
  void TryAll(std::string_view code);
  bool StandsApart(std::string_view code, const Attempt& attempt) const;
  Turn& At(int turn);
  bool IsInMarkers(const Turn& turn) const;
  void MeetMarkers(int firstReferenced);

  const CandidateNames& names_;
  std::vector<Turn>& publics_;
  std::vector<Turn>* privates_ = nullptr;
  std::vector<TurnsOfName> byName_;
  std::vector<int> inMarkers_;  // public turns of names that the markers hold
  std::vector<Attempt> attempts_;
  std::vector<char> cuts_;  // 1 where a marker was put in front of a character
};

}  // namespace quillmate::analysis
