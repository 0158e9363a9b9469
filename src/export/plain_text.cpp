#include <quillmate/export/plain_text.h>
#include <quillmate/text/marked_walk.h>

#include "pieces_p.h"

namespace quillmate::output {
namespace {

/// Appends the code and nothing for the markers.
struct PlainSink {
  std::string plain;

  void Code(std::string_view code) { plain.append(code); }
  void Mark(text::Marker) noexcept {}
};

}  // namespace

void PlainText(std::string_view markedText, const Sink& sink) {
  PlainSink walked;
  ForEachPiece(markedText, [&](std::string_view piece) {
    walked.plain.clear();
    text::WalkMarkedText(piece, walked);
    sink(walked.plain);
  });
}

std::string PlainText(std::string_view markedText) {
  PlainSink walked;
  walked.plain.reserve(markedText.size());
  text::WalkMarkedText(markedText, walked);
  return std::move(walked.plain);
}

}  // namespace quillmate::output
