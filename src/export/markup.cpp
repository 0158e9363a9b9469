#include <memory>

#include "markup_p.h"
#include "pieces_p.h"

namespace quillmate::output {
namespace {

using text::kMarkerLength;
using text::Marker;

/// Writes one piece.
///
/// Where header line markers vanish, what they stood between comes together: two halves of a closing header marker
/// vanish in turn, a CR and an LF become a line break. That is why closing markers and line breaks are recognised in
/// what has been written, not in what is read. What comes together by the removal of a closing marker is no marker
/// again: `closed_` is where the last one was.
class MarkupWriter {
 public:
  MarkupWriter(char* buffer, const Markup& markup, const ByteSlots& bytes)
      : begin_(buffer), out_(buffer), closed_(buffer), markup_(markup), bytes_(bytes) {}

  void Code(std::string_view code) noexcept {
    char* out = out_;
    for (const char c : code) {
      const auto& slot = bytes_[static_cast<unsigned char>(c)];
      out = slot.length == 0 ? PutSpecial(c, out) : slot.Put(out);
    }
    out_ = out;
  }

  void Mark(Marker marker) noexcept {
    if (marker == Marker::kHeaderLineClose && markup_.headersVanish) {
      Code(text::HeaderLineClose);
    } else {
      out_ = markup_.tags[static_cast<std::size_t>(marker)].Put(out_);
    }
  }

  std::string_view Written() const noexcept { return {begin_, static_cast<std::size_t>(out_ - begin_)}; }

 private:
  char* PutSpecial(char c, char* out) noexcept {
    constexpr std::string_view kBegun = text::HeaderLineClose.substr(0, kMarkerLength - 1);
    const std::string_view open(closed_, static_cast<std::size_t>(out - closed_));
    if (c == '|' && markup_.headersVanish && open.ends_with(kBegun)) return closed_ = out - kBegun.size();
    if (c == '\n' && out != begin_ && out[-1] == '\r' && !markup_.lineFeed.empty()) {
      return std::copy(markup_.lineFeed.begin(), markup_.lineFeed.end(), out);
    }
    *out = c;
    return out + 1;
  }

  char* begin_;
  char* out_;
  char* closed_;
  const Markup& markup_;
  const ByteSlots& bytes_;
};

/// The bytes that depend on what is in front of them have an empty slot, so that one look tells them from the others.
ByteSlots SlotsOf(const Markup& markup) noexcept {
  ByteSlots bytes = markup.bytes;
  if (markup.headersVanish) bytes['|'].Set({});
  if (!markup.lineFeed.empty()) bytes['\n'].Set({});
  return bytes;
}

/// Room for what a piece becomes, and for the rest of the last slot.
std::size_t RoomFor(std::size_t pieceSize, const Markup& markup) noexcept {
  std::size_t longest = sizeof(ByteSlots::value_type::text) * kMarkerLength;
  for (const auto& tag : markup.tags) longest = std::max<std::size_t>(longest, tag.length);
  return (pieceSize / kMarkerLength + 1) * longest + sizeof(TagSlots::value_type);
}

}  // namespace

void WriteMarkup(std::string_view markedText, const Markup& markup, const Sink& sink) {
  std::size_t size = 0;
  std::unique_ptr<char[]> buffer;
  const ByteSlots bytes = SlotsOf(markup);
  ForEachPiece(markedText, [&](std::string_view piece) {
    if (piece.size() > size) {
      size = piece.size();
      buffer = std::make_unique_for_overwrite<char[]>(RoomFor(size, markup));
    }
    MarkupWriter writer(buffer.get(), markup, bytes);
    text::WalkMarkedText(piece, writer);
    sink(writer.Written());
  });
}

}  // namespace quillmate::output
