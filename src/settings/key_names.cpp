#include <algorithm>
#include <array>

#include "key_names_p.h"

namespace quillmate::settings {
namespace {

struct Escape {
  char plain;
  std::string_view stored;
};
// Both slashes separate steps of a key path in the storage.
constexpr std::array<Escape, 3> kEscapes = {{{'%', "%25"}, {'/', "%2F"}, {'\\', "%5C"}}};
constexpr std::string_view kEmptyName = "%";

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

std::string EncodeName(std::string_view name) {
  if (name.empty()) return std::string(kEmptyName);
  std::string stored;
  for (const char c : name) {
    const auto* escape = std::find_if(kEscapes.begin(), kEscapes.end(), [c](const Escape& e) { return e.plain == c; });
    if (escape == kEscapes.end()) {
      stored += c;
    } else {
      stored += escape->stored;
    }
  }
  return stored;
}

std::string DecodeName(std::string_view stored) {
  if (stored == kEmptyName) return {};
  std::string name;
  while (!stored.empty()) {
    const auto* escape = std::find_if(kEscapes.begin(), kEscapes.end(),
                                      [stored](const Escape& e) { return stored.starts_with(e.stored); });
    const bool plain = escape == kEscapes.end();
    name += plain ? stored.front() : escape->plain;
    stored.remove_prefix(plain ? 1 : escape->stored.size());
  }
  return name;
}

}  // namespace quillmate::settings
