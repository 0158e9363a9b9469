#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <iterator>
#include <memory>
#include <utility>

#include <quillmate/analysis/reflow.h>
#include <quillmate/analysis/scanner.h>
#include <quillmate/text/markers.h>
#include <quillmate/workers/ordered_work.h>

#include "line_marker_p.h"
#include "routine_walk_p.h"

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

/// The code as it goes into the scan, laid out anew where the options say so, and one line break after it: left out
/// of the text where it only closes the last line.
class PreparedCode {
 public:
  PreparedCode(std::string_view code, const ScanOptions& options) : text_(code) {
    const bool plain = !options.indent && !options.removeEmptyLines;
    if (plain && !code.ends_with('_')) return;
    // The layout looks at lines between two line breaks. The first one has done its work then.
    own_.reserve(code.size() + 2 * kLineBreak.size());
    own_.append(kLineBreak).append(code).append(kLineBreak);
    if (options.indent) own_ = ReflowModule(own_);
    if (options.removeEmptyLines) own_ = RemoveEmptyLines(own_);
    text_ = std::string_view(own_).substr(kLineBreak.size());
    closed_ = text_.ends_with(kLineBreak) && !text_.ends_with("_\r\n");
    if (closed_) text_.remove_suffix(kLineBreak.size());
  }

  std::string_view Text() const noexcept { return text_; }
  /// True when the line break is still to come.
  bool Closed() const noexcept { return closed_; }

 private:
  std::string own_;
  std::string_view text_;
  bool closed_ = true;
};

std::int32_t CountBreaks(std::string_view text) noexcept {
  std::int32_t count = 0;
  // In pieces whose count fits a byte, so that the compiler can count many at a time.
  constexpr std::size_t kPiece = 255;
  for (std::size_t begin = 1; begin < text.size(); begin += kPiece) {
    const std::size_t end = std::min(begin + kPiece, text.size());
    std::uint8_t ofPiece = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const bool isBreak = (text[i] == '\n') & (text[i - 1] == '\r');
      ofPiece = static_cast<std::uint8_t>(ofPiece + static_cast<std::uint8_t>(isBreak));
    }
    count += ofPiece;
  }
  return count;
}

/// A module of that size is worth several cores, which take a part each.
constexpr std::size_t kLong = std::size_t{1} << 20U;
constexpr std::size_t kPartSize = std::size_t{32} << 10U;

/// Puts the marked lines and what the walks make of them together.
class Assembler {
 public:
  /// With `restore` the stand-ins are turned back.
  Assembler(RoutineWalks& walks, bool restore, const WalkSettings& settings)
      : walks_(walks), restore_(restore), settings_(settings) {}

  ScanResult Run(const PreparedCode& code, bool guarded) {
    result_.markedText.reserve(code.Text().size() + code.Text().size() / 2);
    if (code.Text().size() >= kLong && !guarded && !settings_.bodyTabs) {
      MarkOnAllCores(code);
    } else {
      PieceMarker marker(code.Text(), code.Closed(), guarded, settings_.bodyTabs);
      for (MarkedPiece piece; marker.Next(piece);) AppendPiece(piece);
    }
    result_.lineCount = lines_;
    return std::move(result_);
  }

  /// The walk that a line of the result comes from.
  std::size_t WalkOfLine(std::size_t line) const { return walkOfLine_[line]; }

 private:
  /// Marks parts of whole statement lines at the same time; what the walks make of them goes on in order.
  void MarkOnAllCores(const PreparedCode& code) {
    workers::OrderedWork work;
    std::string_view rest = code.Text();
    for (bool last = false; !last;) {
      const std::string_view part = rest.substr(0, FindStatementStart(rest, kPartSize));
      rest.remove_prefix(part.size());
      last = rest.empty();
      while (work.IsFull()) work.FinishFirst();
      const auto pieces = std::make_shared<std::vector<MarkedPiece>>();
      work.Add([pieces, part, closed = last && code.Closed()] { return MarkPart(part, closed, *pieces); },
               [this, pieces](const std::exception_ptr& failure) {
                 if (failure) std::rethrow_exception(failure);
                 for (const MarkedPiece& piece : *pieces) AppendPiece(piece);
               });
    }
    work.FinishAll();
  }

  /// How many bytes the pieces hold.
  static std::size_t MarkPart(std::string_view part, bool closed, std::vector<MarkedPiece>& pieces) {
    PieceMarker marker(part, closed, false, false);
    std::size_t bytes = 0;
    for (MarkedPiece piece; marker.Next(piece); piece = {}) {
      bytes += piece.text.Size();
      pieces.push_back(std::move(piece));
    }
    return bytes;
  }

  void AppendPiece(const MarkedPiece& piece) {
    const std::string_view text = piece.text.View();
    std::size_t done = 0;
    auto start = piece.lineStarts.begin();
    for (const RoutineCandidate& candidate : piece.candidates) {
      AppendLines(piece, start, done, candidate.begin);
      if (start != piece.lineStarts.end()) ++start;
      const std::string_view line = text.substr(candidate.begin, candidate.end - candidate.begin);
      const WrappedLine wrapped = walks_.Visit(candidate, line);
      AppendCandidate(line, wrapped);
      done = candidate.end;
      tabs_ = settings_.bodyTabs ? wrapped.bodyTabs : 0;
    }
    AppendLines(piece, start, done, text.size() + 1);
    CountNewLines();
  }

  void AppendCandidate(std::string_view line, const WrappedLine& wrapped) {
    for (const std::string& empty : wrapped.emptyLines) result_.markedText.append(empty).append(kLineBreak);
    if (wrapped.routine.value != 0) {
      CountNewLines();
      result_.lines.push_back({wrapped.routine, {lines_ + 1}, wrapped.isStart});
      walkOfLine_.push_back(wrapped.walk);
    }
    if (restore_) {
      result_.markedText += RestoreGuards(wrapped.before + std::string(line) + wrapped.after);
    } else {
      result_.markedText.append(wrapped.before).append(line).append(wrapped.after);
    }
  }

  /// Ordinary lines up to `end`, each indented by the body TABs; `start` is the first that begins after `begin`.
  void AppendLines(const MarkedPiece& piece, std::vector<std::size_t>::const_iterator& start, std::size_t begin,
                   std::size_t end) {
    const std::string_view text = piece.text.View();
    for (; start != piece.lineStarts.end() && *start < end; ++start) {
      if (tabs_ == 0) continue;
      Append(text.substr(begin, *start - begin));
      result_.markedText.append(static_cast<std::size_t>(tabs_), '\t');
      begin = *start;
    }
    Append(text.substr(begin, end - begin));
  }

  void Append(std::string_view text) {
    if (restore_) {
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

  RoutineWalks& walks_;
  bool restore_;
  WalkSettings settings_;
  ScanResult result_;
  std::vector<std::size_t> walkOfLine_;
  std::int32_t lines_ = 0;
  std::size_t counted_ = 0;
  int tabs_ = 0;
};

WalkSettings SettingsFor(const ScanOptions& options, bool numbered) {
  return {numbered, options.indent && options.indentBodies, options.emptyLineBeforeRoutines};
}

/// The first scan counts each walk from 0: where a walk's numbers begin is known when all walks have ended.
class IndexScan {
 public:
  IndexScan(const PreparedCode& code, const ScanOptions& options)
      : code_(code),
        settings_(SettingsFor(options, true)),
        // Only where the code itself holds byte 159 can the stand-ins and the code run into each other.
        guarded_(code.Text().find(text::kMarkerByte) != std::string_view::npos) {}

  /// `before` is what the walks count on from; afterwards, what they should have.
  ScanResult Run(codedb::RoutineNumber last, WalkNumbers& before) {
    RoutineWalks walks(guarded_, settings_, before);
    Assembler assembler(walks, guarded_, settings_);
    ScanResult result = assembler.Run(code_, guarded_);
    std::array<std::int32_t, kRoutineWalks> shift{};
    for (std::size_t walk = 0; walk < kRoutineWalks; ++walk) {
      shift[walk] = last.value - before[walk].value;
      before[walk] = last;
      last.value = walks.Last(walk).value + shift[walk];
      std::vector<codedb::RoutineRecord> ofWalk = std::move(walks.Routines(walk));
      for (codedb::RoutineRecord& routine : ofWalk) routine.number.value += shift[walk];
      if (result.routines.empty()) {
        result.routines = std::move(ofWalk);
      } else {
        result.routines.insert(result.routines.end(), std::make_move_iterator(ofWalk.begin()),
                               std::make_move_iterator(ofWalk.end()));
      }
    }
    for (std::size_t i = 0; i < result.lines.size(); ++i) {
      result.lines[i].routine.value += shift[assembler.WalkOfLine(i)];
    }
    result.last = last;
    result.numbersInText = walks.NumbersInText();
    return result;
  }

 private:
  const PreparedCode& code_;
  WalkSettings settings_;
  bool guarded_;
};

}  // namespace

ScanResult ScanForIndex(std::string_view code, const ScanOptions& options, codedb::RoutineNumber last) {
  const PreparedCode prepared(code, options);
  IndexScan scan(prepared, options);
  WalkNumbers before{};
  ScanResult result = scan.Run(last, before);
  if (result.numbersInText && before != WalkNumbers{}) result = scan.Run(last, before);
  return result;
}

std::string ScanForDisplay(std::string_view code, const ScanOptions& options) {
  const PreparedCode prepared(code, options);
  const WalkSettings settings = SettingsFor(options, false);
  // A last line that is continued has no line break after it, so that the closing cut may go into a stand-in.
  const bool guarded = !prepared.Closed() && prepared.Text().ends_with("_\r\n");
  RoutineWalks walks(guarded, settings, {});
  std::string text = Assembler(walks, false, settings).Run(prepared, guarded).markedText;
  if (guarded) text = RestoreLinesAndQuotes(text);
  text.resize(text.size() - std::min(text.size(), kLineBreak.size()));
  return guarded ? RestoreChar159(text) : text;
}

}  // namespace quillmate::analysis
