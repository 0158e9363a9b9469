#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quillmate::navigation {

/// A text to be looked for. The search runs along the needle's rarest character, which the C library finds faster than
/// any loop over the bytes, and compares the rest where it turns up.
class Needle {
 public:
  /// Windows-1252, not empty. With `ignoreCase` letters match in either case, umlauts and accented letters, too.
  Needle(std::string_view needle, bool ignoreCase);

  /// Sets the text to be searched, which must outlive the search, and where to begin.
  void Start(std::string_view text, std::size_t from) noexcept;
  /// Offset of the next occurrence, npos after the last. Occurrences may overlap.
  std::size_t Next() noexcept;

  std::size_t Length() const noexcept { return needle_.size(); }

 private:
  /// Where one of the two forms of the rarest character turns up next.
  struct Stream {
    unsigned char code = 0;
    const char* next = nullptr;
  };
  void Seek(Stream& stream, const char* from) const noexcept;
  bool MatchesAt(const char* text) const noexcept;

  std::string needle_;  // folded when case does not count
  bool ignoreCase_;
  std::size_t rarest_ = 0;  // offset of that character in the needle
  std::array<Stream, 2> streams_;
  std::string_view text_;
};

}  // namespace quillmate::navigation
