#include <algorithm>

#include <quillmate/text/marked_walk.h>
#include <quillmate/text/markers.h>

#include "unused_text_p.h"

namespace quillmate::analysis {
namespace {

/// What is no reference: header and end lines of routines first, then keywords, strings and comments. Of a closer only
/// the first character goes.
constexpr text::SpanRule kHeaderLines{text::HeaderLineOpen, text::HeaderLineClose, 1};
constexpr text::SpanRule kSpans{text::kAnyOpener, "\237|", 1};

void BlankOut(std::string& code, const text::SpanRule& rule) {
  text::MarkedSpan span = text::NextSpan(code, rule, 0);
  while (span.start != code.size()) {
    std::fill(code.data() + span.start, code.data() + span.end, ' ');
    span = text::NextSpan(code, rule, span.end);
  }
}

}  // namespace

std::string PrepareReferenceText(std::string_view markedText) {
  std::string code(markedText);
  BlankOut(code, kHeaderLines);
  BlankOut(code, kSpans);
  return code;
}

}  // namespace quillmate::analysis
