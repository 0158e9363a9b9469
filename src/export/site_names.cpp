#include <array>

#include "site_names_p.h"

namespace quillmate::output {
namespace {

constexpr std::size_t kLongestName = 80;

/// ASCII spellings of the codes from 192 on.
constexpr std::array<std::string_view, 64> kSpellings = {
    "A", "A", "A", "A", "Ae", "A", "Ae", "C", "E", "E", "E", "E", "I",  "I", "I",  "I",  //
    "D", "N", "O", "O", "O",  "O", "Oe", "x", "O", "U", "U", "U", "Ue", "Y", "Th", "ss",
    "a", "a", "a", "a", "ae", "a", "ae", "c", "e", "e", "e", "e", "i",  "i", "i",  "i",
    "d", "n", "o", "o", "o",  "o", "oe", "-", "o", "u", "u", "u", "ue", "y", "th", "y"};

bool IsSafe(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

std::string LowerAscii(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return lower;
}

}  // namespace

std::string AsciiName(std::string_view name) {
  std::string ascii;
  for (const char c : name) {
    const auto code = static_cast<unsigned char>(c);
    if (IsSafe(c)) {
      ascii += c;
    } else if (code >= 192) {
      ascii += kSpellings[code - 192U];
    } else if (!ascii.empty() && ascii.back() != '-') {
      ascii += '-';
    }
    if (ascii.size() >= kLongestName) break;
  }
  return ascii.empty() ? std::string(kNameless) : ascii;
}

std::string FileNames::Make(std::string_view name) {
  std::string stem = AsciiName(name);
  const std::string key = LowerAscii(stem);
  if (taken_.emplace(key, 2).second) return stem;
  for (int& number = taken_[key];; ++number) {
    const std::string suffix = "-" + std::to_string(number);
    // The reference stays good when the table grows.
    if (taken_.emplace(key + suffix, 2).second) return stem + suffix;
  }
}

}  // namespace quillmate::output
