#include <algorithm>
#include <optional>

#include "key_names_p.h"

namespace quillmate::settings {
namespace {

constexpr char kEscape = '%';
constexpr std::size_t kEscapeSize = 3;
constexpr std::string_view kEmptyName = "%";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

constexpr std::string_view kDigits = "0123456789";

/// Cuts the first piece off: a run of digits, or one other byte.
std::string_view TakePiece(std::string_view& text) noexcept {
  const std::size_t digits = std::min(text.find_first_not_of(kDigits), text.size());
  const std::string_view piece = text.substr(0, std::max<std::size_t>(digits, 1));
  text.remove_prefix(piece.size());
  return piece;
}

bool IsNumber(std::string_view piece) noexcept { return kDigits.find(piece.front()) != std::string_view::npos; }

/// Negative, zero or positive; numbers of any length.
int ComparePieces(std::string_view a, std::string_view b) noexcept {
  if (!IsNumber(a) || !IsNumber(b)) return a.compare(b);
  const std::string_view x = a.substr(std::min(a.find_first_not_of('0'), a.size()));
  const std::string_view y = b.substr(std::min(b.find_first_not_of('0'), b.size()));
  if (x.size() != y.size()) return x.size() < y.size() ? -1 : 1;
  return x.compare(y);
}

/// What the escape at the start of the text stands for; nothing when there is none.
std::optional<char> EscapedCharacter(std::string_view stored) noexcept {
  if (stored.size() < kEscapeSize || stored.front() != kEscape) return std::nullopt;
  const std::size_t high = kHexDigits.find(stored[1]);
  const std::size_t low = kHexDigits.find(stored[2]);
  if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
  return static_cast<char>(high * 16 + low);
}

}  // namespace

bool KeyBefore(std::string_view a, std::string_view b) noexcept {
  std::string_view x = a;
  std::string_view y = b;
  while (!x.empty() && !y.empty()) {
    const int order = ComparePieces(TakePiece(x), TakePiece(y));
    if (order != 0) return order < 0;
  }
  if (!x.empty() || !y.empty()) return x.empty();
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

std::string EncodeName(std::string_view name, std::string_view special) {
  if (name.empty()) return std::string(kEmptyName);
  std::string stored;
  for (const char c : name) {
    if (c != kEscape && special.find(c) == std::string_view::npos) {
      stored += c;
      continue;
    }
    const auto code = static_cast<unsigned char>(c);
    ((stored += kEscape) += kHexDigits[code / 16U]) += kHexDigits[code % 16U];
  }
  return stored;
}

std::string DecodeName(std::string_view stored) {
  if (stored == kEmptyName) return {};
  std::string name;
  while (!stored.empty()) {
    const std::optional<char> escaped = EscapedCharacter(stored);
    name += escaped.value_or(stored.front());
    stored.remove_prefix(escaped ? kEscapeSize : 1);
  }
  return name;
}

}  // namespace quillmate::settings
