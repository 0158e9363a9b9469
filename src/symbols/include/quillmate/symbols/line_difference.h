#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// What differs between two sequences: lines of code, words of a line.
///
/// Lines that are once on each side hold the rest in place; between them the shortest script of deletions and
/// insertions is looked for in linear space. The search gives up on a stretch after kMostSteps steps and cuts it at the
/// furthest place it came to: the answer stays right, only perhaps longer than it had to be, and the time grows with
/// the input alone.
namespace quillmate::symbols {

/// `oldCount` elements from `oldFirst` on (0-based) are replaced by `newCount` from `newFirst` on. One of the counts
/// may be 0, never both. Everything between two edits is the same on both sides.
struct Edit {
  std::uint32_t oldFirst, oldCount, newFirst, newCount;
  bool operator==(const Edit&) const = default;
};

inline constexpr std::uint32_t kMostSteps = 256;

/// Elements are equal exactly if their numbers are; numbers are counted from 0 on, without large gaps. In order; no two
/// edits touch.
std::vector<Edit> Differences(std::span<const std::uint32_t> oldIds, std::span<const std::uint32_t> newIds);

/// The same for lines that compare byte by byte.
std::vector<Edit> LineDifferences(std::span<const std::string_view> oldLines,
                                  std::span<const std::string_view> newLines);

/// A line on each side that belong side by side; kNoLine where one side has none.
struct LinePair {
  std::uint32_t oldLine, newLine;
};
inline constexpr std::uint32_t kNoLine = 0xFFFFFFFF;

/// The lines of one edit side by side: what is likest to each other in one row, in the order of both sides. `edit`
/// tells which lines of the two pieces; the answers are numbers of those. Edits of many lines are paired in order.
std::vector<LinePair> PairLines(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines,
                                const Edit& edit);

/// A stretch of a line, in bytes.
struct ByteRange {
  std::uint32_t offset, length;
  bool operator==(const ByteRange&) const = default;
};
struct WordDifference {
  std::vector<ByteRange> oldRanges, newRanges;
};

/// The words that differ between two lines, UTF-8; neighbours joined. Both empty for equal lines.
WordDifference DifferingWords(std::string_view oldLine, std::string_view newLine);

}  // namespace quillmate::symbols
