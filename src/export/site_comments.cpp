#include <algorithm>

#include <quillmate/export/plain_text.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "site_comments_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

std::string_view TrimBlanksAndTabs(std::string_view text) noexcept {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

/// `continued` when the line before is a comment that goes on here.
bool IsCommentLine(std::string_view line, bool continued) noexcept {
  return continued || TrimBlanksAndTabs(line).starts_with(text::CommentOpen);
}

bool HasWord(std::string_view text) noexcept {
  return std::any_of(text.begin(), text.end(), [](char c) { return c != '_' && text::IsIdentifierCharacter(c); });
}

/// The words of a comment line; empty when it only draws a line.
std::string WordsOf(std::string_view markedLine) {
  const std::string plain = PlainText(markedLine);
  std::string_view words = TrimBlanksAndTabs(plain);
  while (words.starts_with('\'')) words.remove_prefix(1);
  if (words.ends_with(" _")) words.remove_suffix(2);
  words = TrimBlanksAndTabs(words);
  return HasWord(words) ? EscapeCode(words) : std::string();
}

bool MayStandAboveModuleComment(std::string_view markedLine) {
  const std::string plain = PlainText(markedLine);
  const std::string_view code = TrimBlanksAndTabs(plain);
  return code.empty() || text::StartsWithIgnoreCase(code, "Option ");
}

}  // namespace

CommentLines::CommentLines(std::string_view markedText)
    : lines_(text::Split(markedText, text::kLineBreak)), isComment_(lines_.size()) {
  bool continued = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    isComment_[i] = IsCommentLine(lines_[i], continued);
    continued = isComment_[i] && !lines_[i].ends_with(text::SpanClose);
  }
}

std::string CommentLines::OfRoutine(codedb::Line start, int headerLines) const {
  const auto header = static_cast<std::size_t>(std::max(start.value, 1) - 1);
  if (header >= lines_.size()) return {};
  std::size_t first = header;
  while (first > 0 && isComment_[first - 1]) --first;
  std::string comment = Text(first, header);
  if (!comment.empty()) return comment;
  const std::size_t below = header + static_cast<std::size_t>(std::max(headerLines, 1));
  return Text(below, EndOfBlock(below));
}

std::string CommentLines::OfModule(const std::function<bool(codedb::Line)>& isRoutineStart) const {
  std::size_t first = 0;
  while (first < lines_.size() && !isComment_[first] && MayStandAboveModuleComment(lines_[first])) ++first;
  const std::size_t end = EndOfBlock(first);
  return isRoutineStart({static_cast<std::int32_t>(end) + 1}) ? std::string() : Text(first, end);
}

std::string_view CommentLines::Lines(codedb::Line start, int count) const {
  const auto first = static_cast<std::size_t>(std::max(start.value, 1) - 1);
  if (first >= lines_.size()) return {};
  const std::size_t last = std::min(first + static_cast<std::size_t>(std::max(count, 1)), lines_.size()) - 1;
  const char* const begin = lines_[first].data();
  return {begin, static_cast<std::size_t>(lines_[last].data() + lines_[last].size() - begin)};
}

std::size_t CommentLines::EndOfBlock(std::size_t first) const {
  while (first < lines_.size() && isComment_[first]) ++first;
  return first;
}

std::string CommentLines::Text(std::size_t first, std::size_t end) const {
  std::string text;
  std::string_view separator;
  for (std::size_t i = first; i < end; ++i) {
    const std::string words = WordsOf(lines_[i]);
    if (words.empty()) {
      if (!text.empty()) separator = "\n\n";
      continue;
    }
    text.append(separator).append(words);
    separator = "\n";
  }
  return text;
}

}  // namespace quillmate::output
