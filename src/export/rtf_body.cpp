#include <cstring>
#include <memory>

#include <quillmate/export/rtf.h>
#include <quillmate/text/marker_match.h>

#include "pieces_p.h"

namespace quillmate::output {
namespace {

using text::CountedMarkerAt;
using text::kMarkerLength;
using text::Marker;

/// No byte of the input becomes longer than a TAB does.
constexpr std::string_view kTab = "\\tab ";
constexpr std::size_t kLongest = kTab.size();
constexpr std::string_view kParagraph = "\\par ";

/// Control words by marker.
constexpr std::string_view kControlWords[] = {"\\cf0 ", "\\cf2 ", "\\cf1 ", "\\cf3 ", "\\b ", "\\b0 "};

constexpr std::array<bool, 256> MakePlainTable() noexcept {
  std::array<bool, 256> table{};
  table.fill(true);
  for (const char c : {'\\', '{', '}', '\t', '\n', '|'}) table[static_cast<unsigned char>(c)] = false;
  return table;
}

constexpr auto kPlain = MakePlainTable();

/// Writes the body of one piece into a buffer that has `kLongest` bytes for each byte of the piece.
///
/// Without bold the header line markers vanish, and what they stood between comes together: two halves of a closing
/// header marker vanish in turn, a CR and an LF become a line break. That is why closing markers and line breaks are
/// recognised in what has been written, not in what is read. What comes together by the removal of a closing marker is
/// no marker again: `closed_` is where the last one was.
class BodyWriter {
 public:
  BodyWriter(char* buffer, bool bold) : begin_(buffer), out_(buffer), closed_(buffer), bold_(bold) {}

  std::string_view Write(std::string_view piece) noexcept {
    const char* in = piece.data();
    const char* const end = in + piece.size();
    while (in != end) {
      const char c = *in;
      if (kPlain[static_cast<unsigned char>(c)]) {
        *out_++ = c;
        ++in;
      } else if (c == '|') {
        in = PutBar(in, end);
      } else {
        PutSpecial(c);
        ++in;
      }
    }
    return {begin_, static_cast<std::size_t>(out_ - begin_)};
  }

 private:
  void Put(std::string_view word) noexcept {
    std::memcpy(out_, word.data(), word.size());
    out_ += word.size();
  }

  void PutSpecial(char c) noexcept {
    if (c == '\t') {
      Put(kTab);
    } else if (c == '\n') {
      const bool lineBreak = out_ != begin_ && out_[-1] == '\r';
      *out_++ = c;
      if (lineBreak) Put(kParagraph);
    } else {
      *out_++ = '\\';
      *out_++ = c;
    }
  }

  /// Writes the marker or the plain bar at `bar`; returns what follows it.
  const char* PutBar(const char* bar, const char* end) noexcept {
    const Marker marker = CountedMarkerAt(bar, end);
    const bool written = bold_ ? marker != Marker::kNone : marker < Marker::kHeaderLineOpen;
    if (written) {
      Put(kControlWords[static_cast<std::size_t>(marker)]);
    } else if (bold_ || marker != Marker::kHeaderLineOpen) {
      PutPlainBar();
      return bar + 1;
    }
    return bar + kMarkerLength;
  }

  void PutPlainBar() noexcept {
    constexpr std::string_view kBegun = text::HeaderLineClose.substr(0, kMarkerLength - 1);
    const auto open = static_cast<std::size_t>(out_ - closed_);
    if (!bold_ && std::string_view(closed_, open).ends_with(kBegun)) {
      out_ -= kBegun.size();
      closed_ = out_;
    } else {
      *out_++ = '|';
    }
  }

  char* begin_;
  char* out_;
  char* closed_;
  bool bold_;
};

}  // namespace

void ColourBody(std::string_view markedText, bool boldRoutines, const Sink& sink) {
  std::size_t size = 0;
  std::unique_ptr<char[]> buffer;
  ForEachPiece(markedText, [&](std::string_view piece) {
    if (piece.size() > size) {
      size = piece.size();
      buffer = std::make_unique_for_overwrite<char[]>(size * kLongest);
    }
    sink(BodyWriter(buffer.get(), boldRoutines).Write(piece));
  });
}

std::string ColourBody(std::string_view markedText, bool boldRoutines) {
  std::string body;
  body.reserve(markedText.size() + markedText.size() / 4);
  ColourBody(markedText, boldRoutines, [&](std::string_view piece) { body.append(piece); });
  return body;
}

}  // namespace quillmate::output
