#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <quillmate/navigation/search.h>

namespace quillmate::cli {

/// A regular expression (PCRE) for code. Case does not count and a whole word has no identifier character beside it, as
/// in the other searches; "^" and "$" are the limits of a line, "." is no line break.
class Pattern {
 public:
  /// `utf8` as the user wrote it. Throws UsageError with the place of the mistake.
  Pattern(std::string_view utf8, bool wholeWord);
  ~Pattern();

  /// Every match that is not empty, left to right; `code` is Windows-1252, positions are offsets in it. Throws
  /// CommandFailure when a match takes more steps or memory than is reasonable.
  void ForEachMatch(std::string_view code, const std::function<void(const navigation::TextMatch& match)>& visit) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace quillmate::cli
