#pragma once

#include <array>
#include <string_view>

#include <quillmate/text/characters.h>
#include <quillmate/text/marked_walk.h>

namespace quillmate::output {

/// A sink of the walk over a module's marked-up text that takes the code apart. It tells `handler`, in order:
///   Identifier(word)   a run of identifier characters outside of keywords, strings and comments
///   Text(bytes)        any other bytes, without line breaks
///   Mark(marker)       one of the six markers, as it is
///   LineBreak()
template <typename Handler>
class CodeSink {
 public:
  explicit CodeSink(Handler& handler) : handler_(handler) {}

  void Code(std::string_view code) {
    const char* const end = code.data() + code.size();
    const char* pending = code.data();
    const auto flush = [&](const char* to) {
      if (pending != to) handler_.Text(std::string_view(pending, static_cast<std::size_t>(to - pending)));
    };
    for (const char* at = pending; at != end;) {
      if (*at == '\r' && at + 1 != end && at[1] == '\n') {
        flush(at);
        handler_.LineBreak();
        pending = at += 2;
      } else if (!inSpan_ && text::IsIdentifierCharacter(*at)) {
        flush(at);
        pending = at;
        while (at != end && text::IsIdentifierCharacter(*at)) ++at;
        handler_.Identifier(std::string_view(pending, static_cast<std::size_t>(at - pending)));
        pending = at;
      } else {
        ++at;
      }
    }
    flush(end);
  }

  void Mark(text::Marker marker) {
    if (marker < text::Marker::kHeaderLineOpen) inSpan_ = marker != text::Marker::kSpanClose;
    handler_.Mark(marker);
  }

 private:
  bool inSpan_ = false;
  Handler& handler_;
};

template <typename Handler>
void WalkCode(std::string_view markedText, Handler& handler) {
  CodeSink sink(handler);
  text::WalkMarkedText(markedText, sink);
}

}  // namespace quillmate::output
