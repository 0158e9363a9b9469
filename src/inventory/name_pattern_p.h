#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmate::inventory {

/// Patterns of names and paths that are left out (ScanOptions::exclude).
class NamePatterns {
 public:
  explicit NamePatterns(std::vector<std::string> patterns) : patterns_(std::move(patterns)) {}
  /// Whether one matches the name, or the whole path of it.
  bool Match(std::string_view name, std::string_view folder) const;

 private:
  std::vector<std::string> patterns_;
};

/// "*" stands for any characters, "?" for one byte; the case of ASCII letters does not count, nor which separator it
/// is.
bool MatchesPattern(std::string_view text, std::string_view pattern) noexcept;

}  // namespace quillmate::inventory
