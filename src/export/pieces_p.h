#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// Long texts go through the exports in pieces that fit the processor's cache.
namespace quillmate::output {

inline constexpr std::size_t kPieceSize = std::size_t{64} * 1024;

/// Bytes after which a text may not be cut: a marker, or a line break around markers, could go on after them.
constexpr std::array<bool, 256> MakeHoldTable() noexcept {
  std::array<bool, 256> table{};
  for (const char c : {'|', '\237', 'f', 'k', 'n', 's', 'x', 'y', '\r'}) table[static_cast<unsigned char>(c)] = true;
  return table;
}

/// The text's first piece: `size` bytes and what it takes to end where a cut changes nothing.
inline std::string_view FirstPiece(std::string_view text, std::size_t size = kPieceSize) noexcept {
  static constexpr auto kHold = MakeHoldTable();
  std::size_t length = std::min(size, text.size());
  while (length > 0 && length < text.size() && kHold[static_cast<unsigned char>(text[length - 1])]) ++length;
  return text.substr(0, length);
}

/// Calls `handle` with one piece after the other.
template <typename Handler>
void ForEachPiece(std::string_view text, Handler handle) {
  while (!text.empty()) {
    const std::string_view piece = FirstPiece(text);
    handle(piece);
    text.remove_prefix(piece.size());
  }
}

}  // namespace quillmate::output
