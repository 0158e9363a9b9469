#include <cstring>

#include <quillmate/export/plain_text.h>
#include <quillmate/text/marker_match.h>

#include "pieces_p.h"

namespace quillmate::output {
namespace {

using text::CountedMarkerAt;
using text::kMarkerLength;
using text::Marker;

/// Appends the piece without its markers.
void AppendPlain(std::string& out, std::string_view piece) {
  const char* start = piece.data();
  const char* const end = start + piece.size();
  const char* in = start;
  while (const void* found = std::memchr(in, '|', static_cast<std::size_t>(end - in))) {
    const char* bar = static_cast<const char*>(found);
    if (CountedMarkerAt(bar, end) == Marker::kNone) {
      in = bar + 1;
      continue;
    }
    out.append(start, bar);
    start = in = bar + kMarkerLength;
  }
  out.append(start, end);
}

}  // namespace

void PlainText(std::string_view markedText, const Sink& sink) {
  std::string plain;
  ForEachPiece(markedText, [&](std::string_view piece) {
    plain.clear();
    AppendPlain(plain, piece);
    sink(plain);
  });
}

std::string PlainText(std::string_view markedText) {
  std::string plain;
  plain.reserve(markedText.size());
  AppendPlain(plain, markedText);
  return plain;
}

}  // namespace quillmate::output
