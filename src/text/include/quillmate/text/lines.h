#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillmate::text {

/// Finds the CRs and LFs of a text one after the other, 64 bytes at a time.
class BreakFinder {
 public:
  explicit BreakFinder(std::string_view text) noexcept : text_(text) {}

  /// The place of the next one; npos after the last.
  std::size_t Next() noexcept {
    while (found_ == 0) {
      if (next_ >= text_.size()) return std::string_view::npos;
      block_ = next_;
      found_ = InBlock(text_.substr(block_, kBlock));
      next_ += kBlock;
    }
    const std::size_t at = block_ + static_cast<std::size_t>(std::countr_zero(found_));
    found_ &= found_ - 1;
    return at;
  }

 private:
  static constexpr std::size_t kBlock = 64;

  /// A bit for each byte that is one.
  static std::uint64_t InBlock(std::string_view block) noexcept {
    std::uint64_t found = 0;
#ifdef __SSE2__
    if (block.size() == kBlock) {
      const __m128i feed = _mm_set1_epi8('\n');
      const __m128i carriage = _mm_set1_epi8('\r');
      for (std::size_t i = 0; i < kBlock; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block.data() + i));
        const __m128i either = _mm_or_si128(_mm_cmpeq_epi8(bytes, feed), _mm_cmpeq_epi8(bytes, carriage));
        found |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(either))) << i;
      }
      return found;
    }
#endif
    for (std::size_t i = 0; i < block.size(); ++i) {
      found |= static_cast<std::uint64_t>(block[i] == '\n' || block[i] == '\r') << i;
    }
    return found;
  }

  std::string_view text_;
  std::size_t block_ = 0;
  /// Where the next block begins.
  std::size_t next_ = 0;
  /// The bits of the block that were not handed out yet.
  std::uint64_t found_ = 0;
};

/// The lines of a text in any line break style, one after the other and without their breaks. As in a split, a text
/// of n line breaks has n + 1 lines.
class LineReader {
 public:
  explicit LineReader(std::string_view text) noexcept : text_(text), breaks_(text) {}

  bool Next(std::string_view& line) noexcept {
    if (done_) return false;
    const std::size_t end = breaks_.Next();
    line = text_.substr(at_, end - at_);
    done_ = end == std::string_view::npos;
    at_ = done_ ? text_.size() : end + 1;
    if (!done_ && text_[end] == '\r' && at_ < text_.size() && text_[at_] == '\n') at_ = breaks_.Next() + 1;
    return true;
  }

  /// What has not been read yet.
  std::string_view Rest() const noexcept { return text_.substr(at_); }

 private:
  std::string_view text_;
  BreakFinder breaks_;
  std::size_t at_ = 0;
  bool done_ = false;
};

}  // namespace quillmate::text
