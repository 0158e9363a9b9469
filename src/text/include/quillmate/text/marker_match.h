#pragma once

#include <cstddef>
#include <cstdint>

#include <quillmate/text/markers.h>

/// Which markers of a marked-up text count: those that the exports replace and the code view leaves out.
///
/// The exports are described as replacements over the whole text, one marker after the other, in the order of the enum.
/// Two markers overlap only when the last bar of one is the first bar of the next; the one that comes first in the enum
/// wins, of two equal ones the left one. Scanned code never holds such a pair, but code that itself contains byte 159
/// may.
namespace quillmate::text {

enum class Marker : std::uint8_t {
  kSpanClose,
  kCommentOpen,
  kKeywordOpen,
  kStringOpen,
  kHeaderLineOpen,
  kHeaderLineClose,
  kNone
};

inline constexpr std::size_t kMarkerLength = SpanClose.size();

constexpr Marker MarkerFromLetters(char second, char third) noexcept {
  if (second == kMarkerByte) {
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
  if (third != kMarkerByte) return Marker::kNone;
  if (second == 'n') return Marker::kSpanClose;
  return second == 'y' ? Marker::kHeaderLineClose : Marker::kNone;
}

/// The marker that the text holds at `bar`, which points at a "|" before `end`.
constexpr Marker MarkerAt(const char* bar, const char* end) noexcept {
  if (end - bar < static_cast<std::ptrdiff_t>(kMarkerLength) || bar[3] != '|') return Marker::kNone;
  return MarkerFromLetters(bar[1], bar[2]);
}

/// The marker at `bar` when it is one that counts. A marker loses to a stronger one that overlaps it on its right,
/// unless that one loses in turn; `bar` must not lie inside a marker that counts.
constexpr Marker CountedMarkerAt(const char* bar, const char* end) noexcept {
  const Marker first = MarkerAt(bar, end);
  bool counts = true;
  for (Marker left = first; left != Marker::kNone && left != Marker::kSpanClose;) {
    bar += kMarkerLength - 1;
    const Marker right = MarkerAt(bar, end);
    if (right >= left) break;
    counts = !counts;
    left = right;
  }
  return counts ? first : Marker::kNone;
}

}  // namespace quillmate::text
