#include <algorithm>
#include <utility>

#include <quillmate/symbols/workers.h>

#include "site_uses_p.h"

namespace quillmate::output {
namespace {

/// A name that may mean more things than this says little about each.
constexpr std::size_t kMostMeanings = 8;

struct Found {
  symbols::SymbolId symbol;
  SiteUse use;
};

class ModuleUses {
 public:
  ModuleUses(const SiteModel& model, symbols::Index module) : model_(model), module_(module) {}

  std::vector<Found> Run() {
    for (const symbols::Occurrence& name : model_.known.Occurrences(module_)) {
      if (name.declares) continue;
      const bool sure = name.certainty == symbols::Certainty::kSure && name.targets.size() == 1;
      if (name.targets.size() > kMostMeanings) {
        for (const symbols::SymbolId target : name.targets) vague_.push_back(target);
        continue;
      }
      for (const symbols::SymbolId target : name.targets) Add(target, name, sure);
    }
    std::stable_sort(found_.begin(), found_.end(), [](const Found& a, const Found& b) { return a.symbol < b.symbol; });
    const auto same = [](const Found& a, const Found& b) {
      return a.symbol == b.symbol && a.use.line == b.use.line && a.use.use == b.use.use && a.use.sure == b.use.sure;
    };
    found_.erase(std::unique(found_.begin(), found_.end(), same), found_.end());
    found_.shrink_to_fit();
    return std::move(found_);
  }

  std::vector<symbols::SymbolId> TakeVague() { return std::move(vague_); }

 private:
  void Add(symbols::SymbolId target, const symbols::Occurrence& name, bool sure) {
    const std::uint32_t shown = model_.ModuleOf(module_) < 0 ? 0 : model_.ShownLine(module_, name.line);
    found_.push_back({target, {module_, shown == 0 ? name.line : shown, name.use, sure, shown != 0}});
  }

  const SiteModel& model_;
  symbols::Index module_;
  std::vector<Found> found_;
  std::vector<symbols::SymbolId> vague_;
};

}  // namespace

SiteUses::SiteUses(const SiteModel& model)
    : first_(model.known.SymbolCount() + 1, 0), vague_(model.known.SymbolCount(), 0) {
  const std::size_t modules = model.known.Modules().size();
  std::vector<std::vector<Found>> found(modules);
  const unsigned workers = symbols::WorkerCount(0, modules);
  // What may mean many things is only counted, by each thread for itself.
  std::vector<std::vector<std::uint32_t>> vague(workers);
  symbols::ForEachPiece(workers, modules, [&](unsigned worker, std::size_t module) {
    ModuleUses uses(model, static_cast<symbols::Index>(module));
    found[module] = uses.Run();
    for (const symbols::SymbolId target : uses.TakeVague()) {
      vague[worker].resize(vague_.size(), 0);
      ++vague[worker][target];
    }
  });
  for (const std::vector<std::uint32_t>& part : vague) {
    for (std::size_t symbol = 0; symbol < part.size(); ++symbol) vague_[symbol] += part[symbol];
  }
  for (const std::vector<Found>& part : found) {
    for (const Found& use : part) ++first_[use.symbol + 1];
  }
  for (std::size_t symbol = 1; symbol < first_.size(); ++symbol) first_[symbol] += first_[symbol - 1];
  uses_.resize(first_.back());
  std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
  for (std::vector<Found>& part : found) {
    for (const Found& use : part) uses_[next[use.symbol]++] = use.use;
    part = {};
  }
}

}  // namespace quillmate::output
