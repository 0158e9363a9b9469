#include <algorithm>

#include <quillmate/export/plain_text.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

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

/// The words of a comment line, UTF-8; empty when it only draws a line.
std::string WordsOf(std::string_view markedLine) {
  const std::string plain = PlainText(markedLine);
  std::string_view words = TrimBlanksAndTabs(plain);
  if (text::StartsWithIgnoreCase(words, "Rem ")) words.remove_prefix(4);
  while (words.starts_with('\'')) words.remove_prefix(1);
  if (words.ends_with(" _")) words.remove_suffix(2);
  if (words.starts_with('*') || words.starts_with('!')) {
    while (words.starts_with('*') || words.starts_with('!')) words.remove_prefix(1);
    while (words.ends_with('*')) words.remove_suffix(1);
  }
  words = TrimBlanksAndTabs(words);
  return HasWord(words) ? text::Utf8FromCode(words) : std::string();
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

TaggedComment CommentLines::OfRoutine(codedb::Line start, int headerLines) const {
  const auto header = static_cast<std::size_t>(std::max(start.value, 1) - 1);
  if (header >= lines_.size()) return {};
  std::size_t first = header;
  while (first > 0 && isComment_[first - 1]) --first;
  TaggedComment comment = Read(first, header);
  if (!comment.IsEmpty()) return comment;
  const std::size_t below = header + static_cast<std::size_t>(std::max(headerLines, 1));
  return Read(below, EndOfBlock(below));
}

TaggedComment CommentLines::OfModule(const std::function<bool(codedb::Line)>& isRoutineStart) const {
  std::size_t first = 0;
  while (first < lines_.size() && !isComment_[first] && MayStandAboveModuleComment(lines_[first])) ++first;
  const std::size_t end = EndOfBlock(first);
  return isRoutineStart({static_cast<std::int32_t>(end) + 1}) ? TaggedComment() : Read(first, end);
}

std::string CommentLines::OfDeclaration(codedb::Line line, bool above) const {
  const auto at = static_cast<std::size_t>(std::max(line.value, 1) - 1);
  if (at >= lines_.size() || isComment_[at]) return {};
  if (const std::size_t behind = lines_[at].find(text::CommentOpen); behind != std::string_view::npos) {
    return WordsOf(lines_[at].substr(behind));
  }
  if (!above) return {};
  std::size_t first = at;
  while (first > 0 && isComment_[first - 1]) --first;
  // What is at the top is the module's.
  std::size_t top = 0;
  while (top < first && !isComment_[top] && MayStandAboveModuleComment(lines_[top])) ++top;
  return top == first ? std::string() : Read(first, at).text;
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

TaggedComment CommentLines::Read(std::size_t first, std::size_t end) const {
  std::vector<std::string> words;
  for (std::size_t i = first; i < end; ++i) {
    std::string line = WordsOf(lines_[i]);
    if (!line.empty() || (!words.empty() && !words.back().empty())) words.push_back(std::move(line));
  }
  while (!words.empty() && words.back().empty()) words.pop_back();
  return ReadTags(words);
}

void AppendComment(std::string& html, const TaggedComment& comment) {
  if (!comment.text.empty()) html.append("<p class=\"note\">").append(EscapeLines(comment.text)).append("</p>\n");
  if (comment.items.empty()) return;
  html += "<dl class=\"pairs\">\n";
  for (const TaggedComment::Item& item : comment.items) {
    html.append("<dt>").append(item.title);
    if (!item.name.empty()) html.append(" <code>").append(EscapeLines(item.name)).append("</code>");
    html.append("</dt>\n<dd>").append(EscapeLines(item.text)).append("</dd>\n");
  }
  html += "</dl>\n";
}

}  // namespace quillmate::output
