#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include <quillmate/export/html.h>
#include <quillmate/text/marker_match.h>

#include "html_frame_p.h"
#include "pieces_p.h"

namespace quillmate::output {
namespace {

using text::kMarkerLength;
using text::Marker;

struct Entity {
  char character;
  std::string_view text;
};

/// None of the texts holds a character that is replaced after it, so that their order does not matter.
constexpr Entity kEntities[] = {
    {'&', "&#38;"},     {'<', "&lt;"},      {'>', "&gt;"},      {'\344', "&auml;"}, {'\366', "&ouml;"},
    {'\374', "&uuml;"}, {'\304', "&Auml;"}, {'\326', "&Ouml;"}, {'\334', "&Uuml;"}, {'\337', "&szlig;"},
    {'"', "&#34;"},     {':', "&#58;"},     {')', "&#41;"},     {'(', "&#40;"},     {'+', "&#43;"},
};

/// A short text in a slot of fixed size: the whole slot is copied, which costs no branch.
template <std::size_t Size>
struct Slot {
  char text[Size] = {};
  std::uint8_t length = 0;

  constexpr void Set(std::string_view source) noexcept {
    std::copy(source.begin(), source.end(), text);
    length = static_cast<std::uint8_t>(source.size());
  }
  char* Put(char* out) const noexcept {
    std::memcpy(out, this, sizeof(*this));
    return out + length;
  }
};

using ByteSlot = Slot<7>;
constexpr std::size_t kLongestEntity = 7;

constexpr std::array<ByteSlot, 256> MakeByteTable() noexcept {
  std::array<ByteSlot, 256> table{};
  for (std::size_t c = 0; c < table.size(); ++c) {
    table[c].text[0] = static_cast<char>(c);
    table[c].length = 1;
  }
  for (const Entity& entity : kEntities) table[static_cast<unsigned char>(entity.character)].Set(entity.text);
  return table;
}

constexpr auto kBytes = MakeByteTable();

/// Fits a tag with three colour parts of eight digits.
using TagSlot = Slot<63>;
using TagSlots = std::array<TagSlot, static_cast<std::size_t>(Marker::kNone)>;

std::string ColourSpan(std::int32_t colour) { return "<span style=\"color:" + ColourToHex(colour) + "\"; >"; }

TagSlots MakeTags(const HtmlOptions& options) {
  TagSlots tags{};
  const auto set = [&](Marker marker, std::string_view tag) { tags[static_cast<std::size_t>(marker)].Set(tag); };
  set(Marker::kSpanClose, "</span>");
  set(Marker::kCommentOpen, ColourSpan(options.commentColour));
  set(Marker::kKeywordOpen, ColourSpan(options.keywordColour));
  set(Marker::kStringOpen, ColourSpan(options.stringColour));
  set(Marker::kHeaderLineOpen, options.boldRoutines ? "<b>" : "");
  set(Marker::kHeaderLineClose, options.boldRoutines ? "</b>" : "");
  return tags;
}

/// Writes the HTML of one piece. Without bold a header line marker leaves nothing, and what it stood between comes
/// together: two halves of a closing header marker vanish in turn, which is why those are recognised in what has been
/// written. What comes together by the removal of a closing marker is no marker again: `closed_` is where the last one
/// was.
class BodyWriter {
 public:
  BodyWriter(char* buffer, const TagSlots& tags, bool bold)
      : begin_(buffer), closed_(buffer), tags_(tags), bold_(bold) {}

  std::string_view Write(std::string_view piece) noexcept {
    const char* in = piece.data();
    const char* const end = in + piece.size();
    char* out = begin_;
    while (in != end) {
      if (*in == '|') {
        out = PutBar(in, end, out);
      } else {
        out = kBytes[static_cast<unsigned char>(*in++)].Put(out);
      }
    }
    return {begin_, static_cast<std::size_t>(out - begin_)};
  }

 private:
  /// Writes the tag of the marker, or the plain bar, at `in` and steps behind it.
  char* PutBar(const char*& in, const char* end, char* out) noexcept {
    const Marker marker = text::CountedMarkerAt(in, end);
    if (marker == Marker::kNone || (!bold_ && marker == Marker::kHeaderLineClose)) {
      ++in;
      return PutPlainBar(out);
    }
    in += kMarkerLength;
    return tags_[static_cast<std::size_t>(marker)].Put(out);
  }

  char* PutPlainBar(char* out) noexcept {
    constexpr std::string_view kBegun = text::HeaderLineClose.substr(0, kMarkerLength - 1);
    if (!bold_ && std::string_view(closed_, static_cast<std::size_t>(out - closed_)).ends_with(kBegun)) {
      return closed_ = out - kBegun.size();
    }
    *out = '|';
    return out + 1;
  }

  char* begin_;
  char* closed_;
  const TagSlots& tags_;
  bool bold_;
};

/// Room for the HTML of a piece, and for the rest of the last slot.
std::size_t RoomFor(std::size_t pieceSize, const TagSlots& tags) noexcept {
  std::size_t longest = kLongestEntity * kMarkerLength;
  for (const TagSlot& tag : tags) longest = std::max<std::size_t>(longest, tag.length);
  return (pieceSize / kMarkerLength + 1) * longest + sizeof(TagSlot);
}

}  // namespace

std::string EscapeHtml(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size() + text.size() / 2);
  for (const char c : text) {
    const ByteSlot& slot = kBytes[static_cast<unsigned char>(c)];
    escaped.append(slot.text, slot.length);
  }
  return escaped;
}

void HtmlBody(std::string_view markedText, const HtmlOptions& options, const Sink& sink) {
  const TagSlots tags = MakeTags(options);
  std::size_t size = 0;
  std::unique_ptr<char[]> buffer;
  ForEachPiece(markedText, [&](std::string_view piece) {
    if (piece.size() > size) {
      size = piece.size();
      buffer = std::make_unique_for_overwrite<char[]>(RoomFor(size, tags));
    }
    sink(BodyWriter(buffer.get(), tags, options.boldRoutines).Write(piece));
  });
}

void BuildHtml(std::string_view markedText, const HtmlOptions& options, const Sink& sink) {
  sink(HtmlHead(options));
  HtmlBody(markedText, options, sink);
  sink(kHtmlEnd);
}

std::string BuildHtml(std::string_view markedText, const HtmlOptions& options) {
  std::string html;
  html.reserve(markedText.size() * 2);
  BuildHtml(markedText, options, [&](std::string_view piece) { html.append(piece); });
  return html;
}

}  // namespace quillmate::output
