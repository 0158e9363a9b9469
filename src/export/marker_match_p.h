#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <quillmate/text/markers.h>

/// Which markers of a marked-up text count.
///
/// The exports are described as replacements over the whole text, one marker after the other. Two markers overlap only
/// when the last bar of one is the first bar of the next; the marker that is replaced earlier wins, of two equal ones
/// the left one. Scanned code never holds such a pair, but code that itself contains byte 159 may.
namespace quillmate::output {

/// In the order in which they are replaced.
enum class Marker : std::uint8_t {
  kSpanClose,
  kCommentOpen,
  kKeywordOpen,
  kStringOpen,
  kHeaderLineOpen,
  kHeaderLineClose,
  kNone
};

inline constexpr std::size_t kMarkerLength = text::SpanClose.size();

constexpr Marker MarkerFromLetters(char second, char third) noexcept {
  if (second == text::kMarkerByte) {
    switch (third) {
      case 'k':
        return Marker::kCommentOpen;
      case 'f':
        return Marker::kKeywordOpen;
      case 's':
        return Marker::kStringOpen;
      case 'x':
        return Marker::kHeaderLineOpen;
      default:
        return Marker::kNone;
    }
  }
  if (third != text::kMarkerByte) return Marker::kNone;
  if (second == 'n') return Marker::kSpanClose;
  return second == 'y' ? Marker::kHeaderLineClose : Marker::kNone;
}

/// The marker that the text holds at `bar`, which points at a "|" before `end`.
constexpr Marker MarkerAt(const char* bar, const char* end) noexcept {
  if (end - bar < static_cast<std::ptrdiff_t>(kMarkerLength) || bar[3] != '|') return Marker::kNone;
  return MarkerFromLetters(bar[1], bar[2]);
}

/// The marker at `bar` when it is one that gets replaced. A marker loses to an overlapping one on its right that is
/// replaced earlier, unless that one loses in turn; `bar` must not lie inside a marker that was replaced.
constexpr Marker ReplacedMarkerAt(const char* bar, const char* end) noexcept {
  const Marker first = MarkerAt(bar, end);
  bool replaced = true;
  for (Marker left = first; left != Marker::kNone && left != Marker::kSpanClose;) {
    bar += kMarkerLength - 1;
    const Marker right = MarkerAt(bar, end);
    if (right >= left) break;
    replaced = !replaced;
    left = right;
  }
  return replaced ? first : Marker::kNone;
}

}  // namespace quillmate::output
