#include <algorithm>
#include <cstdint>
#include <limits>

#include <quillmate/analysis/reflow.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::analysis {
namespace {

using text::kLineBreak;

constexpr std::string_view kContinued = " _";
constexpr std::string_view kThen = "Then";
constexpr std::string_view kIf = "If ";

enum class Fit {
  kBegins,     // the line begins with the word
  kWholeWord,  // and the line ends there or goes on with a blank
  kWholeLine,  // the line is the word
};

/// What a block word does: the line itself is `offset` levels to the left of the new level.
struct BlockRule {
  std::string_view word;
  Fit fit = Fit::kBegins;
  int offset = 0;
  int step = 0;
  bool toZero = false;  // the level becomes 0
};

/// Per first letter in the order of the tests; the first rule that fits holds.
constexpr BlockRule kRules[] = {
    {"Case ", Fit::kBegins, 1, 0},
    {"Do", Fit::kWholeWord, 1, 1},
    {"Else", Fit::kWholeLine, 1, 0},
    {"End With", Fit::kWholeLine, 0, -1},
    {"End If", Fit::kBegins, 0, -1},
    {"End Type", Fit::kBegins, 0, -1},
    {"End Select", Fit::kBegins, 0, -2},
    {"End Sub", Fit::kBegins, 0, 0, true},
    {"End Function", Fit::kBegins, 0, 0, true},
    {"End Property", Fit::kBegins, 0, 0, true},
    {"For ", Fit::kBegins, 1, 1},
    {"If ", Fit::kBegins, 1, 1},
    {"Loop", Fit::kWholeWord, 0, -1},
    {"Next", Fit::kWholeWord, 0, -1},
    {"Public Type", Fit::kBegins, 1, 1},
    {"Private Type", Fit::kBegins, 1, 1},
    {"Select Case ", Fit::kBegins, 2, 2},
    {"Type", Fit::kBegins, 1, 1},
    {"While ", Fit::kBegins, 1, 1},
    {"With ", Fit::kBegins, 1, 1},
    {"Wend", Fit::kWholeWord, 0, -1},
};

/// A line that begins with another letter fits no rule.
constexpr std::string_view kFirstLetters = "CDEFILNPSTW";

bool Fits(const BlockRule& rule, std::string_view line) noexcept {
  if (!line.starts_with(rule.word)) return false;
  const bool whole = line.size() == rule.word.size();
  switch (rule.fit) {
    case Fit::kBegins:
      return true;
    case Fit::kWholeWord:
      return whole || line[rule.word.size()] == ' ';
    case Fit::kWholeLine:
      return whole;
  }
  return false;
}

/// The lines of a text, one after the other; the piece after the last line break is no line.
class LineReader {
 public:
  explicit LineReader(std::string_view text) noexcept : rest_(text) {}

  /// The next line without its break; false when only the last piece is left.
  bool Next(std::string_view& line) noexcept {
    const std::size_t end = rest_.find(kLineBreak);
    if (end == std::string_view::npos) return false;
    line = rest_.substr(0, end);
    rest_.remove_prefix(end + kLineBreak.size());
    return true;
  }

  std::string_view Rest() const noexcept { return rest_; }

 private:
  std::string_view rest_;
};

class Reflow {
 public:
  std::string Run(std::string_view text) {
    out_.reserve(text.size() + text.size() / 8);
    LineReader lines(text);
    std::string_view line;
    while (lines.Next(line)) {
      AppendLine(line, lines);
      out_ += kLineBreak;
    }
    return std::move(out_.append(lines.Rest()));
  }

 private:
  void AppendLine(std::string_view line, const LineReader& following) {
    const std::string_view code = text::TrimLeft(line);
    if (code.empty()) return;
    Classify(code, following);
    previous_ = code;
    out_.append(static_cast<std::size_t>(std::max(level_ - offset_, 0)), '\t').append(code);
  }

  void Classify(std::string_view code, const LineReader& following) {
    if (previous_.ends_with(kContinued)) {
      offset_ = -1;
    } else if (!code.starts_with(kIf) || code.ends_with(kThen) || OpensBlock(code, following)) {
      ApplyRule(code);
    }
  }

  void ApplyRule(std::string_view code) noexcept {
    offset_ = 0;
    if (kFirstLetters.find(code.front()) == std::string_view::npos) return;
    for (const BlockRule& rule : kRules) {
      if (rule.word.front() != code.front() || !Fits(rule, code)) continue;
      offset_ = rule.offset;
      level_ = rule.toZero ? 0 : Limit(level_ + rule.step);
      return;
    }
  }

  /// The level is a 16-bit number.
  static int Limit(int level) noexcept {
    using Limits = std::numeric_limits<std::int16_t>;
    return std::clamp<int>(level, Limits::min(), Limits::max());
  }

  /// True when an If whose line does not end with "Then" opens a block all the same: continued, or with a comment
  /// after the "Then".
  static bool OpensBlock(std::string_view code, LineReader following) {
    std::string logical(code);
    for (std::string_view taken = code; taken.ends_with(kContinued);) {
      if (!following.Next(taken)) {
        logical += following.Rest();
        break;
      }
      logical += taken;
    }
    logical = text::ReplaceAll(logical, kContinued, "");
    return CutComment(logical).ends_with(kThen);
  }

  /// The line in front of its last apostrophe outside quotes, trimmed; the line as it is when it has none. Looked for
  /// from the end, from the third character on.
  static std::string_view CutComment(std::string_view line) noexcept {
    if (line.find('\'', 2) == std::string_view::npos) return line;
    bool inQuotes = false;
    for (std::size_t i = line.size(); i-- > 2;) {
      if (line[i] == '"') inQuotes = !inQuotes;
      if (line[i] == '\'' && !inQuotes) return text::Trim(line.substr(0, i));
    }
    return line;
  }

  std::string out_;
  std::string_view previous_;
  int level_ = 0;
  int offset_ = 0;
};

}  // namespace

std::string ReflowModule(std::string_view text) {
  if (text.find('\t') == std::string_view::npos) return Reflow().Run(text);
  std::string plain(text);
  std::erase(plain, '\t');
  return Reflow().Run(plain);
}

}  // namespace quillmate::analysis
