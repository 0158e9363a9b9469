#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>

namespace quillmate::navigation {

/// How a stretch of code is shown.
enum class Span : std::uint8_t { kPlain, kKeyword, kComment, kString };

/// A stretch of one look inside a line, never empty, line breaks left out. Offsets are 0-based characters of the view's
/// text.
struct StyleRun {
  std::size_t start = 0;
  std::size_t length = 0;
  Span span = Span::kPlain;
  bool headerLine = false;  // header or end line of a routine: bold when the option says so
};

/// A module's text as the user sees it, with how it is to be coloured.
struct PlainModule {
  /// Without markers, Windows-1252, line breaks CR LF.
  std::string text;
  /// In text order, neighbours differ; what no run covers is plain. The plain stretches of a header line have runs,
  /// too.
  std::vector<StyleRun> runs;
};

/// Takes the markers out of a marked-up text. A keyword, comment or string runs to its closer or, without one, to the
/// end of the text, as in the RTF; markers that overlap count as there. A line that was wrapped in header markers twice
/// is a header line up to its first closing marker. Linear; a run for about every 25 bytes of real code.
PlainModule StripMarkers(std::string_view markedText);

/// State of one code view `rtbHaupt`: text, caret and selection. Positions are 0-based offsets in the text, where a
/// line break counts as two characters (CR LF).
class CodeView {
 public:
  CodeView() = default;
  explicit CodeView(std::string text);

  const std::string& Text() const noexcept { return text_; }
  std::size_t Length() const noexcept { return text_.size(); }

  /// 0-based line that holds the character at an offset; the offset may be the text's length.
  std::size_t LineFromChar(std::size_t offset) const noexcept;
  /// The same as the index counts lines.
  codedb::Line LineAt(std::size_t offset) const noexcept {
    return {static_cast<std::int32_t>(LineFromChar(offset)) + 1};
  }
  std::size_t LineCount() const noexcept { return lineStarts_.size(); }
  /// Offset of the first character of a 0-based line that exists.
  std::size_t LineStart(std::size_t line) const noexcept { return lineStarts_[line]; }

  /// Start of the selection, which is the caret when nothing is selected.
  std::size_t SelStart() const noexcept { return selStart_; }
  /// Where names are looked up: after a word that the user has selected up to its end or that a search has found, else
  /// the start of the selection.
  std::size_t Caret() const noexcept { return caretBehind_ ? selStart_ + selLength_ : selStart_; }
  std::size_t SelLength() const noexcept { return selLength_; }
  std::string_view SelText() const noexcept;
  void Select(std::size_t start, std::size_t length, bool caretBehind = false) noexcept;

  /// Moves to the start of a line and selects its first word, with the result of a bisection over the characters.
  /// Line 0 counts as 1. A line after the end, or below 0, leaves the caret at
  /// the end of the text with nothing selected.
  void GoToLine(codedb::Line line);
  /// Moves the caret back to the start of its line and selects up to the first blank, also beyond the line's end when
  /// the line has none: up to the end of the text at the worst.
  void SelectFirstWordOfLine();

 private:
  std::string text_;
  std::vector<std::size_t> lineStarts_{0};
  std::size_t selStart_ = 0;
  std::size_t selLength_ = 0;
  bool caretBehind_ = false;
};

}  // namespace quillmate::navigation
