#pragma once

#include <array>
#include <string_view>

#include <quillmate/text/characters.h>
#include <quillmate/text/marker_match.h>
#include <quillmate/text/markers.h>

/// One pass over a module's marked-up text.
namespace quillmate::output {

namespace walk {

enum class ByteKind : unsigned char { kOther, kIdentifier, kBar, kReturn };

using KindTable = std::array<ByteKind, 256>;

inline KindTable MakeKinds() noexcept {
  KindTable kinds{};
  for (unsigned code = 0; code < kinds.size(); ++code) {
    if (text::IsIdentifierCharacter(static_cast<unsigned char>(code))) kinds[code] = ByteKind::kIdentifier;
  }
  kinds['|'] = ByteKind::kBar;
  kinds['\r'] = ByteKind::kReturn;
  return kinds;
}

inline const KindTable kKinds = MakeKinds();

}  // namespace walk

/// Tells `handler` what the text holds, in order:
///   Identifier(word)   a run of identifier characters outside of keywords, strings and comments
///   Text(bytes)        any other bytes, without line breaks
///   Mark(marker)       one of the six markers
///   LineBreak()
/// Markers come as they stand, whether they match or not.
template <typename Handler>
class CodeWalk {
 public:
  CodeWalk(std::string_view markedText, Handler& handler)
      : at_(markedText.data()), end_(at_ + markedText.size()), pending_(at_), handler_(handler) {}

  void Run() {
    while (at_ != end_) {
      switch (walk::kKinds[static_cast<unsigned char>(*at_)]) {
        case walk::ByteKind::kOther:
          ++at_;
          break;
        case walk::ByteKind::kIdentifier:
          TakeWord();
          break;
        case walk::ByteKind::kBar:
          TakeBar();
          break;
        case walk::ByteKind::kReturn:
          TakeReturn();
          break;
      }
    }
    Flush();
  }

 private:
  void Flush() {
    if (pending_ != at_) handler_.Text(std::string_view(pending_, static_cast<std::size_t>(at_ - pending_)));
  }

  void Skip(std::ptrdiff_t count) {
    at_ += count;
    pending_ = at_;
  }

  void TakeWord() {
    const char* last = at_;
    while (last != end_ && walk::kKinds[static_cast<unsigned char>(*last)] == walk::ByteKind::kIdentifier) ++last;
    if (inSpan_) {
      at_ = last;
      return;
    }
    Flush();
    handler_.Identifier(std::string_view(at_, static_cast<std::size_t>(last - at_)));
    Skip(last - at_);
  }

  void TakeBar() {
    const text::Marker marker = text::CountedMarkerAt(at_, end_);
    if (marker == text::Marker::kNone) {
      ++at_;
      return;
    }
    Flush();
    if (marker == text::Marker::kSpanClose) {
      inSpan_ = false;
    } else if (marker < text::Marker::kHeaderLineOpen) {
      inSpan_ = true;
    }
    handler_.Mark(marker);
    Skip(text::kMarkerLength);
  }

  void TakeReturn() {
    if (at_ + 1 == end_ || at_[1] != '\n') {
      ++at_;
      return;
    }
    Flush();
    handler_.LineBreak();
    Skip(2);
  }

  const char* at_;
  const char* end_;
  /// Start of the text that the handler has not been told about.
  const char* pending_;
  bool inSpan_ = false;
  Handler& handler_;
};

}  // namespace quillmate::output
