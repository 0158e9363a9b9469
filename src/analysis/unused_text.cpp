#include <algorithm>

#include <quillmate/text/characters.h>
#include <quillmate/text/marked_walk.h>
#include <quillmate/text/operations.h>

#include "unused_text_p.h"

namespace quillmate::analysis {
namespace {

constexpr std::string_view kAnyCloser = "\237|";
/// What is no reference: header and end lines of routines first, then keywords, strings and comments. Of a closer only
/// the first character goes.
constexpr text::SpanRule kHeaderLines{text::HeaderLineOpen, text::HeaderLineClose, 1};
constexpr text::SpanRule kSpans{text::kAnyOpener, kAnyCloser, 1};
constexpr std::string_view kEventVariable = "WithEvents";
constexpr std::string_view kInterface = "Implements ";
/// Begins the types of the parameters that a ribbon hands to its call-backs.
constexpr std::string_view kRibbonType = "IRibbon";

/// The identifier that a text begins with after blanks.
std::string_view LeadingIdentifier(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const auto end = std::ranges::find_if_not(text, text::IsIdentifierCharacter);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

class Preparation {
 public:
  explicit Preparation(std::string_view markedText) : marked_(markedText) { result_.code = markedText; }

  ReferenceText Run() {
    BlankOut(kHeaderLines, [&](std::size_t start, std::size_t end) { NoteRibbon(start, end); });
    BlankOut(kSpans, [&](std::size_t start, std::size_t end) { NoteSpan(start, end); });
    NoteInterfaces();
    return std::move(result_);
  }

 private:
  template <typename Note>
  void BlankOut(const text::SpanRule& rule, Note note) {
    std::string& code = result_.code;
    text::MarkedSpan span = text::NextSpan(code, rule, 0);
    while (span.start != code.size()) {
      note(span.start, span.close);
      std::fill(code.data() + span.start, code.data() + span.end, ' ');
      span = text::NextSpan(code, rule, span.end);
    }
  }

  void NoteRibbon(std::size_t start, std::size_t end) {
    if (marked_.substr(start, end - start).find(kRibbonType) == std::string_view::npos) return;
    for (std::size_t at = marked_.find(text::kLineBreak, counted_); at < start;
         at = marked_.find(text::kLineBreak, counted_)) {
      ++line_.value;
      counted_ = at + text::kLineBreak.size();
    }
    result_.ribbonLines.push_back(line_);
  }

  void NoteSpan(std::size_t start, std::size_t end) {
    const std::string_view span = marked_.substr(start, end - start);
    if (span.starts_with(text::StringOpen)) {
      result_.literals.push_back(span.substr(text::StringOpen.size()));
    } else if (span.starts_with(text::KeywordOpen) &&
               span.substr(text::KeywordOpen.size()).starts_with(kEventVariable)) {
      AddEventSource(LeadingIdentifier(marked_.substr(std::min(end + kAnyCloser.size(), marked_.size()))));
    }
  }

  /// Each has a line of its own. Of a qualified name the class is the last part.
  void NoteInterfaces() {
    const std::string_view code = result_.code;
    for (std::size_t at = code.find(kInterface); at != std::string_view::npos; at = code.find(kInterface, at + 1)) {
      if (at > 0 && code[at - 1] != '\n') continue;
      const std::string_view line = text::TextBefore(code.substr(at + kInterface.size()), text::kLineBreak);
      AddEventSource(LeadingIdentifier(text::TextAfterLast(line, ".")));
    }
  }

  void AddEventSource(std::string_view name) {
    if (!name.empty()) result_.eventSources.emplace_back(name);
  }

  std::string_view marked_;
  std::size_t counted_ = 0;  // the lines in front of this offset are counted
  codedb::Line line_{1};
  ReferenceText result_;
};

}  // namespace

ReferenceText PrepareReferenceText(std::string_view markedText) { return Preparation(markedText).Run(); }

}  // namespace quillmate::analysis
