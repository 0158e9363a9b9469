#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <quillmate/text/markers.h>

/// The walk over marked-up text that all readers share: what is code, and which markers count.
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
/// unless that one loses in turn; `bar` must not be inside a marker that counts.
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

/// Tells `sink` what the text holds, in order:
///   Code(bytes)    what is between two markers, never empty; bars that belong to no marker included
///   Mark(marker)   one of the six markers, whether openers and closers match or not
template <typename Sink>
void WalkMarkedText(std::string_view markedText, Sink& sink) {
  const char* code = markedText.data();
  const char* const end = code + markedText.size();
  for (const char* at = code; at != end;) {
    const void* const found = std::memchr(at, '|', static_cast<std::size_t>(end - at));
    if (found == nullptr) break;
    const char* const bar = static_cast<const char*>(found);
    const Marker marker = CountedMarkerAt(bar, end);
    if (marker == Marker::kNone) {
      at = bar + 1;
      continue;
    }
    if (bar != code) sink.Code(std::string_view(code, static_cast<std::size_t>(bar - code)));
    sink.Mark(marker);
    code = at = bar + kMarkerLength;
  }
  if (code != end) sink.Code(std::string_view(code, static_cast<std::size_t>(end - code)));
}

/// What opens and closes the spans that one reader leaves out. Such readers have rules of their own: they look for the
/// next closer of one kind, whatever opened the span.
struct SpanRule {
  std::string_view opener;
  std::string_view closer;
  /// How many of the closer's characters belong to the span.
  std::size_t closerLength;
};

/// "|" and byte 159: how every opener begins.
inline constexpr std::string_view kAnyOpener = "|\237";

/// Offsets in the text. A span that is never closed runs to the end of the text.
struct MarkedSpan {
  std::size_t start = 0;
  /// The first character of the closer.
  std::size_t close = 0;
  /// After the last character that belongs to the span.
  std::size_t end = 0;
};

/// The first span that begins at `from` or later; all three offsets are the text's length when there is none.
inline MarkedSpan NextSpan(std::string_view text, const SpanRule& rule, std::size_t from) noexcept {
  const std::size_t start = std::min(text.find(rule.opener, from), text.size());
  const std::size_t close = std::min(text.find(rule.closer, start + rule.opener.size()), text.size());
  return {start, close, std::min(close + rule.closerLength, text.size())};
}

}  // namespace quillmate::text
