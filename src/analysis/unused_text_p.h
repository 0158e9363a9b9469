#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>

namespace quillmate::analysis {

/// A module's marked-up text as the search for references sees it, with what was met on the way.
struct ReferenceText {
  /// The text with header lines, keywords, string literals and comments blanked out, of the same length. The last
  /// characters of closing markers stay.
  std::string code;
  /// The string literals; they point into the marked-up text.
  std::vector<std::string_view> literals;
  /// Names whose routines the host or another class calls as NAME_EVENT: variables that receive events, interfaces that
  /// the class implements.
  std::vector<std::string> eventSources;
  /// 1-based lines of the headers of ribbon call-backs.
  std::vector<codedb::Line> ribbonLines;
};

/// `markedText` must outlive the result. A part that is never closed runs to the end of the text.
ReferenceText PrepareReferenceText(std::string_view markedText);

}  // namespace quillmate::analysis
