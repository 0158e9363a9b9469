#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <quillmate/analysis/scanner.h>

/// A slow, literal scanner: one whole-text replacement after the other, in the order in which they are defined. The
/// product's scanner has to agree with it byte for byte.
namespace quillmate::literal {

struct Routine {
  int kind = 0;
  int visibility = 0;
  int headerLines = 0;
  std::string name;
  std::int64_t number = 0;
  std::int64_t start = 0;  // 0: never seen
  std::int64_t end = 0;

  bool operator==(const Routine&) const = default;
};

struct Scan {
  std::string text;
  std::vector<Routine> routines;
  std::int64_t counter = 0;
  std::int64_t size = 0;
};

Scan ScanForIndex(const std::string& code, const analysis::ScanOptions& options, std::int64_t counter);
std::string ScanForDisplay(const std::string& code, const analysis::ScanOptions& options);
std::string Reflow(const std::string& text);

}  // namespace quillmate::literal
