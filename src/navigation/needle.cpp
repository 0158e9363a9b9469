#include <algorithm>
#include <cstring>

#include <quillmate/text/characters.h>

#include "needle_p.h"

namespace quillmate::navigation {
namespace {

/// Characters of code and its markers, the most frequent first. All others are rarer.
constexpr std::string_view kFrequent =
    " |en\237ltrfsia\r\nugdob.mch()ExZ\"=STACB,NykVLMPpIFwvDG01&RWz_\344\374':2<O34$";

std::size_t Frequency(char c) noexcept {
  const std::size_t rank = kFrequent.find(c);
  return rank == std::string_view::npos ? 0 : kFrequent.size() - rank;
}

/// The other byte that folds to the same letter; the byte itself when there is none.
unsigned char OtherCase(unsigned char folded) noexcept {
  for (unsigned code = 0; code < 256; ++code) {
    const auto other = static_cast<unsigned char>(code);
    if (other != folded && text::ToLower(static_cast<char>(other)) == folded) return other;
  }
  return folded;
}

}  // namespace

Needle::Needle(std::string_view needle, bool ignoreCase) : needle_(needle), ignoreCase_(ignoreCase) {
  if (ignoreCase_)
    std::ranges::transform(needle_, needle_.begin(), [](char c) { return static_cast<char>(text::ToLower(c)); });
  const auto rarest = std::ranges::min_element(needle_, {}, Frequency);
  rarest_ = static_cast<std::size_t>(rarest - needle_.begin());
  const auto code = static_cast<unsigned char>(*rarest);
  streams_[0].code = code;
  streams_[1].code = ignoreCase_ ? OtherCase(code) : code;
}

void Needle::Start(std::string_view text, std::size_t from) noexcept {
  text_ = text;
  const bool room = from <= text.size() && text.size() - from >= needle_.size();
  streams_[0].next = streams_[1].next = nullptr;
  if (!room) return;
  Seek(streams_[0], text.data() + from + rarest_);
  if (streams_[1].code != streams_[0].code) Seek(streams_[1], text.data() + from + rarest_);
}

/// Only where the whole needle has room is looked.
void Needle::Seek(Stream& stream, const char* from) const noexcept {
  const char* const end = text_.data() + text_.size() - (needle_.size() - rarest_ - 1);
  stream.next = from >= end
                    ? nullptr
                    : static_cast<const char*>(std::memchr(from, stream.code, static_cast<std::size_t>(end - from)));
}

std::size_t Needle::Next() noexcept {
  while (streams_[0].next != nullptr || streams_[1].next != nullptr) {
    const bool second =
        streams_[0].next == nullptr || (streams_[1].next != nullptr && streams_[1].next < streams_[0].next);
    Stream& stream = streams_[second ? 1 : 0];
    const char* const start = stream.next - rarest_;
    Seek(stream, stream.next + 1);
    if (MatchesAt(start)) return static_cast<std::size_t>(start - text_.data());
  }
  return std::string_view::npos;
}

bool Needle::MatchesAt(const char* text) const noexcept {
  if (!ignoreCase_) return std::memcmp(text, needle_.data(), needle_.size()) == 0;
  return std::equal(needle_.begin(), needle_.end(), text,
                    [](char n, char c) { return static_cast<char>(text::ToLower(c)) == n; });
}

}  // namespace quillmate::navigation
