#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "site_model_p.h"

/// Where the code uses what it declares, for all symbols at once.
namespace quillmate::output {

/// A line that uses a symbol.
struct SiteUse {
  symbols::Index module = 0;  ///< in the understanding
  /// Of the stored text; of a module without a page, or of a line that isn't shown, as the understanding counts.
  std::uint32_t line = 0;
  symbols::Use use = symbols::Use::kRead;
  bool sure = true;
  bool hasPlace = true;  ///< a page shows the line
};

class SiteUses {
 public:
  SiteUses() = default;
  explicit SiteUses(const SiteModel& model);

  /// By module, then line; each line once for each use.
  std::span<const SiteUse> Of(symbols::SymbolId symbol) const {
    return std::span(uses_).subspan(first_[symbol], first_[symbol + 1] - first_[symbol]);
  }
  /// Uses that may mean the symbol, or one of many others: too many to list.
  std::uint32_t Vague(symbols::SymbolId symbol) const { return vague_[symbol]; }

 private:
  std::vector<std::uint32_t> first_, vague_;
  std::vector<SiteUse> uses_;
};

}  // namespace quillmate::output
