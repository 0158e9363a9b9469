#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <quillmate/export/sink.h>
#include <quillmate/text/marked_walk.h>

/// Marked-up text in another markup: HTML and RTF are written by the same sink of the walk, with tables of their own.
namespace quillmate::output {

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

/// What is written for each byte of code.
using ByteSlots = std::array<Slot<7>, 256>;

/// Every byte for itself.
constexpr ByteSlots PlainBytes() noexcept {
  ByteSlots slots{};
  for (std::size_t c = 0; c < slots.size(); ++c) {
    slots[c].text[0] = static_cast<char>(c);
    slots[c].length = 1;
  }
  return slots;
}

/// What is written for each marker. A slot fits a tag with three colour parts of eight digits.
using TagSlots = std::array<Slot<63>, static_cast<std::size_t>(text::Marker::kNone)>;

struct Markup {
  const ByteSlots& bytes;
  TagSlots tags;
  /// What is written for the LF of a line break; empty when it is no different from another LF.
  std::string_view lineFeed;
  /// Header line markers leave nothing; their tags are empty then.
  bool headersVanish = false;
};

/// Hands the text out in pieces made from about 64 KB of marked-up text each.
void WriteMarkup(std::string_view markedText, const Markup& markup, const Sink& sink);

}  // namespace quillmate::output
