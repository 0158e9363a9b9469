#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/project/understanding.h>

namespace quillmate::ui {

/// How well a name fits what was typed; 0 where it does not. Better are: the whole name, its beginning, the initials of
/// its words ("zb" for ZugangBuchen), a part of it, its letters in their order. `folded` and `typed` are in lower case,
/// `name` is as written; UTF-8.
int FitOf(std::string_view name, std::string_view folded, std::string_view typed) noexcept;

/// Finds declarations by parts of their names. Case does not count.
class NameMatcher {
 public:
  explicit NameMatcher(std::shared_ptr<const project::Understanding> known);

  const std::shared_ptr<const project::Understanding>& Known() const noexcept { return known_; }
  /// The best `most` declarations, the best one first. "Lager.zug" asks for modules with the first part in their names.
  std::vector<symbols::SymbolId> Find(const std::string& typed, std::size_t most);

 private:
  std::string_view Folded(symbols::SymbolId symbol) const;
  bool FitsModule(symbols::SymbolId symbol, std::string_view module) const;

  std::shared_ptr<const project::Understanding> known_;
  /// The names in lower case one after the other, and where each begins.
  std::string folded_;
  std::vector<std::uint32_t> starts_;
  /// What was typed last and what fits it: more letters fit nothing else.
  std::string last_;
  std::vector<symbols::SymbolId> candidates_;
};

}  // namespace quillmate::ui
