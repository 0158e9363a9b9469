#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>

#include "site_tags_p.h"

/// What modules and routines say about themselves in comments.
namespace quillmate::output {

/// The lines of a module's marked-up text and which of them hold nothing but a comment. The text must outlive it.
///
/// Comments are given without apostrophes and without the frames of stars around them, taken apart where they mark what
/// they tell. Where there were no words, or only a line was drawn, there is an empty line, but not at the ends. Empty
/// when there is no comment.
class CommentLines {
 public:
  /// `markedText` without the line breaks that storing has added.
  explicit CommentLines(std::string_view markedText);

  /// The comment directly above the header that begins in line `start` or, without one, directly below its
  /// `headerLines` lines.
  TaggedComment OfRoutine(codedb::Line start, int headerLines) const;
  /// The comment at the module's top: nothing is before it but empty lines and Option statements. One that
  /// `isRoutineStart` says to be above a routine belongs to that.
  TaggedComment OfModule(const std::function<bool(codedb::Line)>& isRoutineStart) const;
  /// What is said of something that line `line` declares: after it, else, where `above`, directly above it. Plain
  /// UTF-8.
  std::string OfDeclaration(codedb::Line line, bool above) const;
  /// The marked-up text of some lines, without the last line's end.
  std::string_view Lines(codedb::Line start, int count) const;

 private:
  /// 0-based.
  std::size_t EndOfBlock(std::size_t first) const;
  TaggedComment Read(std::size_t first, std::size_t end) const;

  std::vector<std::string_view> lines_;
  std::vector<bool> isComment_;
};

/// A paragraph, and what is marked below it.
void AppendComment(std::string& html, const TaggedComment& comment);

}  // namespace quillmate::output
