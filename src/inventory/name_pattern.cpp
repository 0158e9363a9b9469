#include <algorithm>

#include "name_pattern_p.h"

namespace quillmate::inventory {
namespace {

char Folded(char c) noexcept {
  if (c == '\\') return '/';
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool MatchesPattern(std::string_view text, std::string_view pattern) noexcept {
  std::size_t at = 0, in = 0;
  // Where the last star is, and what it has taken so far.
  std::size_t star = std::string_view::npos, taken = 0;
  while (at < text.size()) {
    if (in < pattern.size() && pattern[in] == '*') {
      star = in++;
      taken = at;
    } else if (in < pattern.size() && (pattern[in] == '?' || Folded(pattern[in]) == Folded(text[at]))) {
      ++in;
      ++at;
    } else if (star != std::string_view::npos) {
      in = star + 1;
      at = ++taken;
    } else {
      return false;
    }
  }
  while (in < pattern.size() && pattern[in] == '*') ++in;
  return in == pattern.size();
}

bool NamePatterns::Match(std::string_view name, std::string_view folder) const {
  return std::any_of(patterns_.begin(), patterns_.end(), [&](const std::string& pattern) {
    if (pattern.find_first_of("/\\") == std::string::npos) return MatchesPattern(name, pattern);
    std::string path(folder);
    if (!path.ends_with('/') && !path.ends_with('\\')) path += '/';
    return MatchesPattern(path.append(name), pattern);
  });
}

}  // namespace quillmate::inventory
