#pragma once

#include <cstdint>
#include <string_view>

namespace quillmate::inventory {

/// A sum over lines of code that stays the same whatever their indentation and the case of their letters are: the host
/// changes both by itself. 64 bits, never 0 once a line was added.
class TextHash {
 public:
  /// A line without its break; blank ones don't count.
  void Add(std::string_view line) noexcept {
    bool blank = true;
    bool pending = false;
    bool quoted = false;
    for (const char c : line) {
      if (!quoted && (c == ' ' || c == '\t')) {
        pending = !blank;
        continue;
      }
      if (pending) Mix(' ');
      pending = false;
      blank = false;
      if (c == '"') quoted = !quoted;
      Mix(!quoted && c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
    }
    if (blank) return;
    Mix('\n');
    used_ = true;
  }
  std::uint64_t Value() const noexcept {
    if (!used_) return 0;
    std::uint64_t value = sum_;
    value = (value ^ (value >> 33U)) * 0xFF51AFD7ED558CCDU;
    value = (value ^ (value >> 33U)) * 0xC4CEB9FE1A85EC53U;
    value ^= value >> 33U;
    return value == 0 ? 1 : value;
  }

 private:
  void Mix(char c) noexcept { sum_ = (sum_ ^ static_cast<unsigned char>(c)) * 0x100000001B3U; }

  std::uint64_t sum_ = 0xCBF29CE484222325U;
  bool used_ = false;
};

}  // namespace quillmate::inventory
