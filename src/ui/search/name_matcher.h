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
  struct Fit;

  std::string_view Folded(std::size_t name) const;
  std::vector<char> FittingModules(std::string_view module) const;
  void Take(std::size_t name, int fit, const std::vector<char>& modules, std::size_t most,
            std::vector<Fit>& best) const;

  std::shared_ptr<const project::Understanding> known_;
  /// Each spelling once: most of what a large project declares has names that others have, too.
  std::vector<std::string_view> names_;
  /// Them in lower case one after the other, where each begins, and which letters are in it.
  std::string folded_;
  std::vector<std::uint32_t> starts_;
  std::vector<std::uint64_t> letters_;
  /// What has a name: symbols_[first_[2 * name]] on, and from first_[2 * name + 1] on what only one routine sees.
  std::vector<std::uint32_t> first_;
  std::vector<symbols::SymbolId> symbols_;
  /// What was typed last and what fits it: more letters fit nothing else.
  std::string last_;
  std::vector<std::uint32_t> candidates_;
};

}  // namespace quillmate::ui
