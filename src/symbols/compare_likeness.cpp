#include <algorithm>
#include <functional>
#include <unordered_map>

#include "compare_p.h"

namespace quillmate::symbols {
namespace {

/// Mixes two numbers so that equal results of different pairs are as good as never.
std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept {
  std::uint64_t x = a ^ (b + 0x9E3779B97F4A7C15ULL + (a << 6U) + (a >> 2U));
  x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  x = (x ^ (x >> 27U)) * 0x94D049BB133111EBULL;
  return x ^ (x >> 31U);
}

/// How many of the likest each bag is measured with.
constexpr std::size_t kCandidates = 4;

/// Which old bags hold a line; those of common ones are forgotten.
class Postings {
 public:
  Postings(std::span<const LineBag> bags, std::span<const std::uint64_t> salts) {
    for (std::uint32_t bag = 0; bag < bags.size(); ++bag) {
      std::uint64_t last = 0;
      bool first = true;
      for (const LineBag::Line& line : bags[bag].lines) {
        if (!first && line.hash == last) continue;
        first = false;
        last = line.hash;
        std::vector<std::uint32_t>& holders = holders_[Mix(line.hash, salts[bag])];
        if (holders.size() <= kCommonLine) holders.push_back(bag);
      }
    }
  }

  std::span<const std::uint32_t> Holders(std::uint64_t hash, std::uint64_t salt) const {
    const auto found = holders_.find(Mix(hash, salt));
    if (found == holders_.end() || found->second.size() > kCommonLine) return {};
    return found->second;
  }

 private:
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> holders_;
};

}  // namespace

void LineBag::Add(std::string_view canonicalLine) {
  const std::uint64_t hash = std::hash<std::string_view>()(canonicalLine);
  lines.push_back({hash, static_cast<std::uint32_t>(std::min<std::size_t>(canonicalLine.size(), kHeaviestLine))});
  weight += lines.back().weight;
  whole = Mix(whole, hash);
}

void LineBag::Finish() { std::sort(lines.begin(), lines.end()); }

double LikenessOf(const LineBag& a, const LineBag& b) noexcept {
  std::uint64_t common = 0;
  for (std::size_t i = 0, j = 0; i < a.lines.size() && j < b.lines.size();) {
    if (a.lines[i].hash == b.lines[j].hash) {
      common += a.lines[i].weight;
      ++i, ++j;
    } else {
      a.lines[i].hash < b.lines[j].hash ? ++i : ++j;
    }
  }
  const std::uint64_t all = a.weight + b.weight;
  return all == 0 ? 0.0 : 2.0 * static_cast<double>(common) / static_cast<double>(all);
}

std::vector<LikePair> LikePairs(std::span<const LineBag> oldBags, std::span<const LineBag> newBags,
                                std::span<const std::uint64_t> oldSalts, std::span<const std::uint64_t> newSalts,
                                double least) {
  const Postings postings(oldBags, oldSalts);
  std::vector<LikePair> pairs;
  std::vector<std::uint64_t> votes(oldBags.size());
  std::vector<std::uint32_t> voted;
  for (std::uint32_t bag = 0; bag < newBags.size(); ++bag) {
    voted.clear();
    for (const LineBag::Line& line : newBags[bag].lines) {
      for (const std::uint32_t holder : postings.Holders(line.hash, newSalts[bag])) {
        if (votes[holder] == 0) voted.push_back(holder);
        votes[holder] += line.weight + std::uint64_t{1};
      }
    }
    const auto likest = voted.begin() + static_cast<std::ptrdiff_t>(std::min(voted.size(), kCandidates));
    std::partial_sort(voted.begin(), likest, voted.end(), [&](std::uint32_t a, std::uint32_t b) {
      return votes[a] != votes[b] ? votes[a] > votes[b] : a < b;
    });
    for (auto candidate = voted.begin(); candidate != likest; ++candidate) {
      const double likeness = LikenessOf(oldBags[*candidate], newBags[bag]);
      if (likeness >= least) pairs.push_back({*candidate, bag, likeness});
    }
    for (const std::uint32_t holder : voted) votes[holder] = 0;
  }
  std::stable_sort(pairs.begin(), pairs.end(), [](const LikePair& a, const LikePair& b) {
    if (a.likeness != b.likeness) return a.likeness > b.likeness;
    return a.oldNumber != b.oldNumber ? a.oldNumber < b.oldNumber : a.newNumber < b.newNumber;
  });
  return pairs;
}

}  // namespace quillmate::symbols
