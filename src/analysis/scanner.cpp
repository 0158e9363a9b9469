#include <algorithm>
#include <utility>

#include <quillmate/analysis/reflow.h>
#include <quillmate/analysis/scanner.h>
#include <quillmate/text/markers.h>

#include "line_marker.h"
#include "routine_walk.h"

namespace quillmate::analysis {
namespace {

using text::kLineBreak;

/// Runs of line breaks become one line break.
std::string RemoveEmptyLines(std::string_view code) {
  std::string out;
  out.reserve(code.size());
  std::size_t start = 0;
  while (start < code.size()) {
    std::size_t end = code.find(kLineBreak, start);
    end = end == std::string_view::npos ? code.size() : end + kLineBreak.size();
    out.append(code, start, end - start);
    while (code.substr(end).starts_with(kLineBreak)) end += kLineBreak.size();
    start = end;
  }
  return out;
}

/// The code as it goes into the scan: between two line breaks, laid out anew where the options say so. Of the result
/// the first line break has done its work and is left out.
std::string PrepareCode(std::string_view code, const ScanOptions& options) {
  std::string prepared;
  prepared.reserve(code.size() + 2 * kLineBreak.size());
  prepared.append(kLineBreak).append(code).append(kLineBreak);
  if (options.indent) prepared = ReflowModule(prepared);
  if (options.removeEmptyLines) prepared = RemoveEmptyLines(prepared);
  prepared.erase(0, kLineBreak.size());
  return prepared;
}

std::int32_t CountBreaks(std::string_view text) noexcept {
  std::int32_t count = 0;
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    if (at > 0 && text[at - 1] == '\r') ++count;
  }
  return count;
}

/// Puts the marked lines and what the walks made of them together.
class Assembler {
 public:
  Assembler(const MarkedCode& marked, const RoutineWalk& walk, bool guarded, const WalkSettings& settings)
      : marked_(marked), walk_(walk), guarded_(guarded), settings_(settings) {}

  ScanResult Run() {
    const std::string_view text = marked_.text.View();
    result_.markedText.reserve(text.size() + 16 * marked_.candidates.size());
    result_.lines.reserve(marked_.candidates.size());
    std::size_t done = 0;
    int tabs = 0;
    for (std::size_t i = 0; i < marked_.candidates.size(); ++i) {
      const RoutineCandidate& candidate = marked_.candidates[i];
      AppendLines(done, candidate.begin, tabs);
      AppendCandidate(text.substr(candidate.begin, candidate.end - candidate.begin), walk_.Lines()[i]);
      done = candidate.end;
      tabs = settings_.bodyTabs ? walk_.Lines()[i].bodyTabs : 0;
    }
    AppendLines(done, text.size(), tabs);
    CountNewLines();
    result_.lineCount = lines_;
    return std::move(result_);
  }

 private:
  void AppendCandidate(std::string_view line, const WrappedLine& wrapped) {
    for (const std::string& empty : wrapped.emptyLines) result_.markedText.append(empty).append(kLineBreak);
    if (wrapped.routine.value != 0) {
      CountNewLines();
      result_.lines.push_back({wrapped.routine, {lines_ + 1}, wrapped.isStart});
    }
    if (guarded_) {
      result_.markedText += RestoreGuards(wrapped.before + std::string(line) + wrapped.after);
    } else {
      result_.markedText.append(wrapped.before).append(line).append(wrapped.after);
    }
  }

  /// Ordinary lines, each indented by the body TABs.
  void AppendLines(std::size_t begin, std::size_t end, int tabs) {
    const std::string_view text = marked_.text.View();
    if (tabs > 0) {
      auto start = std::lower_bound(marked_.lineStarts.begin(), marked_.lineStarts.end(), begin + 1);
      for (; start != marked_.lineStarts.end() && (*start < end || (*start == end && end == text.size())); ++start) {
        Append(text.substr(begin, *start - begin));
        result_.markedText.append(static_cast<std::size_t>(tabs), '\t');
        begin = *start;
      }
    }
    Append(text.substr(begin, end - begin));
  }

  void Append(std::string_view text) {
    if (guarded_) {
      result_.markedText += RestoreGuards(text);
    } else {
      result_.markedText += text;
    }
  }

  /// Counts the lines of what was appended since the last count.
  void CountNewLines() {
    lines_ += CountBreaks(std::string_view(result_.markedText).substr(counted_));
    counted_ = result_.markedText.size();
  }

  const MarkedCode& marked_;
  const RoutineWalk& walk_;
  bool guarded_;
  WalkSettings settings_;
  ScanResult result_;
  std::int32_t lines_ = 0;
  std::size_t counted_ = 0;
};

WalkSettings SettingsFor(const ScanOptions& options, bool numbered) {
  return {numbered, options.indent && options.indentBodies, options.emptyLineBeforeRoutines};
}

}  // namespace

ScanResult ScanForIndex(std::string_view code, const ScanOptions& options, codedb::RoutineNumber last) {
  const std::string prepared = PrepareCode(code, options);
  const WalkSettings settings = SettingsFor(options, true);
  // Only where the code itself holds byte 159 can the stand-ins and the code run into each other.
  const bool guarded = prepared.find(text::kMarkerByte) != std::string::npos;
  const MarkedCode marked = MarkLines(prepared, guarded, settings.bodyTabs);
  RoutineWalk walk(prepared, marked, guarded, settings, last);
  ScanResult result = Assembler(marked, walk, guarded, settings).Run();
  result.routines = std::move(walk.Routines());
  result.last = walk.Last();
  result.numbersInText = walk.NumbersInText();
  return result;
}

std::string ScanForDisplay(std::string_view code, const ScanOptions& options) {
  const std::string prepared = PrepareCode(code, options);
  const WalkSettings settings = SettingsFor(options, false);
  // A last line that is continued has no line break behind it, so that the closing cut may go into a stand-in.
  const bool guarded = prepared.ends_with("_\r\n");
  const MarkedCode marked = MarkLines(prepared, guarded, settings.bodyTabs);
  const RoutineWalk walk(prepared, marked, guarded, settings, {});
  std::string text = Assembler(marked, walk, false, settings).Run().markedText;
  if (guarded) text = RestoreLinesAndQuotes(text);
  text.resize(text.size() - std::min(text.size(), kLineBreak.size()));
  return guarded ? RestoreChar159(text) : text;
}

}  // namespace quillmate::analysis
