#include <algorithm>

#include <quillmate/symbols/line_difference.h>

/// Lines side by side, and the words that differ in them.
namespace quillmate::symbols {
namespace {

bool IsWordByte(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
         byte == '_';
}

/// Words, runs of blanks, and each other character on its own.
std::vector<std::string_view> WordsOf(std::string_view line) {
  std::vector<std::string_view> words;
  while (!line.empty()) {
    std::size_t length = 1;
    const auto run = [&](auto belongs) {
      while (length < line.size() && belongs(line[length])) ++length;
    };
    if (IsWordByte(line.front())) {
      run(IsWordByte);
    } else if (line.front() == ' ' || line.front() == '\t') {
      run([](char c) { return c == ' ' || c == '\t'; });
    }
    words.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
  return words;
}

void AddRange(std::vector<ByteRange>& ranges, std::string_view line, std::span<const std::string_view> words,
              std::uint32_t first, std::uint32_t count) {
  if (count == 0) return;
  const auto offset = static_cast<std::uint32_t>(words[first].data() - line.data());
  const std::string_view last = words[first + count - 1];
  const auto end = static_cast<std::uint32_t>(last.data() + last.size() - line.data());
  ranges.push_back({offset, end - offset});
}

/// How much of two lines is the same, in bytes of common words.
class Likeness {
 public:
  explicit Likeness(std::span<const std::string_view> lines) {
    for (const std::string_view line : lines) bags_.push_back(Bag(line));
  }
  static std::uint32_t Common(const Likeness& a, std::size_t i, const Likeness& b, std::size_t j) {
    const auto& left = a.bags_[i];
    const auto& right = b.bags_[j];
    std::uint32_t common = 0;
    for (std::size_t l = 0, r = 0; l < left.size() && r < right.size();) {
      if (left[l] == right[r]) {
        common += static_cast<std::uint32_t>(left[l].size());
        ++l, ++r;
      } else {
        left[l] < right[r] ? ++l : ++r;
      }
    }
    return common;
  }

 private:
  static std::vector<std::string_view> Bag(std::string_view line) {
    std::vector<std::string_view> words = WordsOf(line);
    std::erase_if(words, [](std::string_view word) { return word.front() == ' ' || word.front() == '\t'; });
    std::sort(words.begin(), words.end());
    return words;
  }
  std::vector<std::vector<std::string_view>> bags_;
};

void PairInOrder(const Edit& edit, std::vector<LinePair>& pairs) {
  for (std::uint32_t i = 0; i < std::max(edit.oldCount, edit.newCount); ++i) {
    pairs.push_back({i < edit.oldCount ? edit.oldFirst + i : kNoLine, i < edit.newCount ? edit.newFirst + i : kNoLine});
  }
}

}  // namespace

std::vector<LinePair> PairLines(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines,
                                const Edit& edit) {
  constexpr std::uint64_t kMostCells = 10'000;
  std::vector<LinePair> pairs;
  if (edit.oldCount == edit.newCount || edit.oldCount == 0 || edit.newCount == 0 ||
      std::uint64_t{edit.oldCount} * edit.newCount > kMostCells) {
    PairInOrder(edit, pairs);
    return pairs;
  }
  const Likeness olds(oldLines.subspan(edit.oldFirst, edit.oldCount));
  const Likeness news(newLines.subspan(edit.newFirst, edit.newCount));
  // best[i][j]: the most that the lines from i and j on can have in common.
  const std::size_t width = edit.newCount + std::size_t{1};
  std::vector<std::uint32_t> best((edit.oldCount + std::size_t{1}) * width);
  std::vector<std::uint32_t> common(best.size());
  for (std::size_t i = edit.oldCount; i-- > 0;) {
    for (std::size_t j = edit.newCount; j-- > 0;) {
      common[i * width + j] = Likeness::Common(olds, i, news, j);
      best[i * width + j] = std::max(
          {best[(i + 1) * width + j], best[i * width + j + 1], best[(i + 1) * width + j + 1] + common[i * width + j]});
    }
  }
  std::uint32_t i = 0, j = 0;
  while (i < edit.oldCount || j < edit.newCount) {
    const bool both = i < edit.oldCount && j < edit.newCount;
    const std::size_t at = i * width + j;
    if (both && common[at] > 0 && best[at] == best[at + width + 1] + common[at]) {
      pairs.push_back({edit.oldFirst + i++, edit.newFirst + j++});
    } else if (i < edit.oldCount && (!both || best[at] == best[at + width])) {
      pairs.push_back({edit.oldFirst + i++, kNoLine});
    } else {
      pairs.push_back({kNoLine, edit.newFirst + j++});
    }
  }
  return pairs;
}

WordDifference DifferingWords(std::string_view oldLine, std::string_view newLine) {
  const std::vector<std::string_view> oldWords = WordsOf(oldLine), newWords = WordsOf(newLine);
  WordDifference found;
  for (const Edit& edit : LineDifferences(oldWords, newWords)) {
    AddRange(found.oldRanges, oldLine, oldWords, edit.oldFirst, edit.oldCount);
    AddRange(found.newRanges, newLine, newWords, edit.newFirst, edit.newCount);
  }
  return found;
}

}  // namespace quillmate::symbols
