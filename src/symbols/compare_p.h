#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/symbols/compare.h>

/// The steps of a comparison.
namespace quillmate::symbols {

/// What likeness is measured by: lines as hash and weight, sorted.
struct LineBag {
  struct Line {
    std::uint64_t hash;
    std::uint32_t weight;
    bool operator<(const Line& other) const noexcept { return hash < other.hash; }
  };
  std::vector<Line> lines;
  std::uint64_t weight = 0;  ///< of all lines
  std::uint64_t whole = 0;   ///< the same for the same lines in the same order

  void Add(std::string_view canonicalLine);
  void Finish();
};

/// From 0 to 1; 0 for bags without lines.
double LikenessOf(const LineBag& a, const LineBag& b) noexcept;

struct LikePair {
  std::uint32_t oldNumber, newNumber;
  double likeness;
};

/// Pairs of bags that share a line that is not common, each new one with its few likest old ones, `least` or more like;
/// the likest first. `salt` is by bag: bags of different salts have nothing in common.
std::vector<LikePair> LikePairs(std::span<const LineBag> oldBags, std::span<const LineBag> newBags,
                                std::span<const std::uint64_t> oldSalts, std::span<const std::uint64_t> newSalts,
                                double least);

/// Everything that the steps share.
struct ComparisonWork {
  const ComparedState& oldState;
  const ComparedState& newState;
  Comparison& result;
  /// By project: the one that it belongs to on the other side, else kNone.
  std::vector<Index> newProjectOf, oldProjectOf;
  /// By module: its entry in result.modules.
  std::vector<Index> entryOfOld, entryOfNew;
  /// By module: the routine of the other side, as far as it is known by now.
  std::vector<std::vector<RoutinePlace>> partnersOfOld, partnersOfNew;
};

void PairProjects(ComparisonWork& work);
/// Fills result.modules but for their contents.
void PairModules(ComparisonWork& work);
void PairRoutines(ComparisonWork& work);
/// Fills in the routines and what is outside of them.
void CompareTexts(ComparisonWork& work);
void CompareDeclarations(ComparisonWork& work);
void CompareFacts(ComparisonWork& work);
/// State of each module, and whether all is equal.
void JudgeModules(ComparisonWork& work);
void CompareUnused(ComparisonWork& work);

/// Like a set of names regardless of case: the folded form.
std::string Folded(std::string_view name);
/// Equal but for their line breaks.
bool SameText(const language::Module& a, const language::Module& b) noexcept;

}  // namespace quillmate::symbols
