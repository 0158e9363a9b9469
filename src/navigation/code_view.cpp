#include <algorithm>
#include <cstring>

#include <quillmate/navigation/code_view.h>
#include <quillmate/text/markers.h>

namespace quillmate::navigation {
namespace {

std::vector<std::size_t> FindLineStarts(std::string_view text) {
  std::vector<std::size_t> starts{0};
  for (std::size_t found = text.find('\n'); found != std::string_view::npos; found = text.find('\n', found + 1)) {
    if (found > 0 && text[found - 1] == '\r') starts.push_back(found + 1);
  }
  return starts;
}

}  // namespace

CodeView::CodeView(std::string text) : text_(std::move(text)), lineStarts_(FindLineStarts(text_)) {}

std::size_t CodeView::LineFromChar(std::size_t offset) const noexcept {
  const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  return static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
}

std::string_view CodeView::SelText() const noexcept { return std::string_view(text_).substr(selStart_, selLength_); }

void CodeView::Select(std::size_t start, std::size_t length, bool caretBehind) noexcept {
  selStart_ = std::min(start, text_.size());
  selLength_ = std::min(length, text_.size() - selStart_);
  caretBehind_ = caretBehind;
}

void CodeView::GoToLine(codedb::Line line) {
  Select(text_.size(), 0);
  if (line.value < 0 || line.value > static_cast<std::int32_t>(LineCount())) return;
  // The probes of the bisection never reach the end of the text: an empty last line is not found, and the caret is
  // there already. Line 0 is found one line too far, in the first line, before which there is no other.
  Select(line.value == 0 ? 0 : LineStart(static_cast<std::size_t>(line.value) - 1), 0);
  SelectFirstWordOfLine();
}

void CodeView::SelectFirstWordOfLine() {
  const std::string_view text = text_;
  std::size_t caret = selStart_;
  const bool insideLineBreak = text.substr(0, caret).ends_with('\r') && text.substr(caret).starts_with('\n');
  if (insideLineBreak) --caret;
  const std::size_t lineBreak = text.substr(0, caret).find_last_of(text::kLineBreak);
  caret = lineBreak == std::string_view::npos ? 0 : lineBreak + 1;
  Select(caret, std::min(text.find(' ', caret), text.size()) - caret);
}

}  // namespace quillmate::navigation
