#include "unused_text.h"

#include <algorithm>

#include <quillmate/text/characters.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::analysis {
namespace {

constexpr std::string_view kAnyOpener = "|\237";
constexpr std::string_view kAnyCloser = "\237|";
constexpr std::string_view kEventVariable = "WithEvents";
constexpr std::string_view kInterface = "Implements ";
/// Begins the types of the parameters that a ribbon hands to its call-backs.
constexpr std::string_view kRibbonType = "IRibbon";

/// The identifier that a text begins with behind blanks.
std::string_view LeadingIdentifier(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const auto end =
      std::ranges::find_if_not(text, [](char c) { return text::IsIdentifierCharacter(static_cast<unsigned char>(c)); });
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

class Preparation {
 public:
  explicit Preparation(std::string_view markedText) : marked_(markedText) { result_.code = markedText; }

  ReferenceText Run() {
    ForEachPart(text::HeaderLineOpen, text::HeaderLineClose,
                [&](std::size_t start, std::size_t end) { NoteRibbon(start, end); });
    ForEachPart(kAnyOpener, kAnyCloser, [&](std::size_t start, std::size_t end) { NoteSpan(start, end); });
    NoteInterfaces();
    return std::move(result_);
  }

 private:
  /// Blanks out what lies between the first characters of an opener and of the closer behind it, both included.
  template <typename Note>
  void ForEachPart(std::string_view opener, std::string_view closer, Note note) {
    std::string& code = result_.code;
    for (std::size_t start = code.find(opener); start != std::string::npos;) {
      const std::size_t closing = code.find(closer, start + opener.size());
      const std::size_t end = std::min(closing, code.size());
      note(start, end);
      const std::size_t behind = std::min(end + 1, code.size());
      std::fill(code.begin() + static_cast<std::ptrdiff_t>(start), code.begin() + static_cast<std::ptrdiff_t>(behind),
                ' ');
      start = code.find(opener, behind);
    }
  }

  void NoteRibbon(std::size_t start, std::size_t end) {
    if (marked_.substr(start, end - start).find(kRibbonType) == std::string_view::npos) return;
    for (std::size_t at = marked_.find(text::kLineBreak, counted_); at < start;
         at = marked_.find(text::kLineBreak, counted_)) {
      ++line_;
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
  long line_ = 1;
  ReferenceText result_;
};

}  // namespace

ReferenceText PrepareReferenceText(std::string_view markedText) { return Preparation(markedText).Run(); }

}  // namespace quillmate::analysis
