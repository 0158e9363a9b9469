#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>

namespace quillmate::text {

/// The lines of a text in any line break style, one after the other and without their breaks. As in a split, a text
/// of n line breaks has n + 1 lines.
class LineReader {
 public:
  explicit LineReader(std::string_view text) noexcept : text_(text) {}

  bool Next(std::string_view& line) noexcept {
    if (done_) return false;
    if (nextFeed_ < at_ || !searched_) nextFeed_ = Find('\n');
    if (nextReturn_ < at_ || !searched_) nextReturn_ = Find('\r');
    searched_ = true;
    const std::size_t end = std::min(nextFeed_, nextReturn_);
    line = text_.substr(at_, end - at_);
    done_ = end == std::string_view::npos;
    const bool pair = end == nextReturn_ && nextFeed_ == end + 1;
    at_ = done_ ? text_.size() : end + (pair ? 2 : 1);
    return true;
  }

  /// What has not been read yet.
  std::string_view Rest() const noexcept { return text_.substr(at_); }

 private:
  std::size_t Find(char c) const noexcept { return text_.find(c, at_); }

  std::string_view text_;
  std::size_t at_ = 0;
  // Where the next break of each sort stands; a sort that does not occur is searched for once.
  std::size_t nextFeed_ = 0;
  std::size_t nextReturn_ = 0;
  bool searched_ = false;
  bool done_ = false;
};

}  // namespace quillmate::text
