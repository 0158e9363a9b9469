#include <algorithm>
#include <vector>

#include <quillmate/language/parse.h>

#include "compare_forms_p.h"

namespace quillmate::symbols {
namespace {

constexpr bool IsBlank(char c) noexcept { return c == ' ' || c == '\t'; }
constexpr char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr bool IsWordByte(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= '0' && byte <= '9') || (Lower(c) >= 'a' && Lower(c) <= 'z') || byte == '_';
}

std::string_view TrimRight(std::string_view text) noexcept {
  while (!text.empty() && (IsBlank(text.back()) || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

/// " _" at the end, after a blank.
bool EndsInContinuation(std::string_view text) noexcept {
  return text.ends_with('_') && (text.size() == 1 || IsBlank(text[text.size() - 2]));
}

bool BeginsRem(std::string_view code) noexcept {
  return code.size() >= 3 && Lower(code[0]) == 'r' && Lower(code[1]) == 'e' && Lower(code[2]) == 'm' &&
         (code.size() == 3 || IsBlank(code[3]));
}

/// Where the comment begins, or the end of the line.
std::size_t CommentStart(std::string_view text) noexcept {
  bool inString = false;
  bool statementBegins = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') {
      inString = !inString;
    } else if (!inString && c == '\'') {
      return i;
    } else if (!inString && statementBegins && BeginsRem(text.substr(i))) {
      return i;
    }
    if (!IsBlank(c)) statementBegins = !inString && c == ':';
  }
  return text.size();
}

/// Blanks beside these change nothing. "." and "!" are none of them: after a blank they begin a member of With.
constexpr std::string_view kTight = ",;=<>*/\\^+-():";

bool IsTight(char c) noexcept { return kTight.find(c) != std::string_view::npos; }

void AppendWord(std::string& out, std::string_view word, bool foldCase, std::string_view ownName) {
  const bool ascii = std::all_of(word.begin(), word.end(), [](char c) { return (c & 0x80) == 0; });
  if (!ownName.empty() && (ascii ? word.size() == ownName.size() : true)) {
    const bool same =
        ascii ? std::equal(word.begin(), word.end(), ownName.begin(), [](char a, char b) { return Lower(a) == b; })
              : language::FoldName(word) == ownName;
    if (same) {
      out += '\x01';
      return;
    }
  }
  if (!foldCase) {
    out += word;
  } else if (ascii) {
    for (const char c : word) out += Lower(c);
  } else {
    out += language::FoldName(word);
  }
}

/// Takes the pieces of a logical line together.
class Walk {
 public:
  explicit Walk(std::span<const std::string_view> lines) : lines_(lines) {}
  template <typename Visit>
  void ForEach(Visit visit) {
    bool inComment = false;
    for (const std::string_view line : lines_) {
      const LineParts parts = TakeApart(line, inComment);
      inComment = parts.commentContinues;
      visit(parts);
    }
  }

 private:
  std::span<const std::string_view> lines_;
};

std::string Comments(std::span<const std::string_view> lines) {
  std::string text;
  Walk(lines).ForEach([&](const LineParts& parts) {
    if (!parts.comment.empty()) text.append(parts.comment) += '\n';
  });
  return text;
}

/// The letters outside of strings in lower case, everything else as it is.
void AppendFolded(std::string& out, std::string_view code) {
  for (std::size_t i = 0; i < code.size();) {
    std::size_t end = i + 1;
    if (code[i] == '"') {
      while (end < code.size() && code[end] != '"') ++end;
      end = std::min(end + 1, code.size());
      out += code.substr(i, end - i);
    } else if (IsWordByte(code[i])) {
      while (end < code.size() && IsWordByte(code[end])) ++end;
      AppendWord(out, code.substr(i, end - i), true, {});
    } else {
      out += code[i];
    }
    i = end;
  }
}

bool SameLines(std::span<const std::string_view> a, std::span<const std::string_view> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

/// The lines as they are, comments and case left out: what differs in them is layout.
std::string Layout(std::span<const std::string_view> lines) {
  std::string text;
  Walk(lines).ForEach([&](const LineParts& parts) {
    const bool onlyComment = parts.code.empty() && !parts.comment.empty();
    if (onlyComment) return;
    text += parts.indent;
    AppendFolded(text, parts.code);
    if (parts.continues) text += " _";
    text += '\n';
  });
  return text;
}

}  // namespace

LineParts TakeApart(std::string_view line, bool inComment) noexcept {
  LineParts parts;
  line = TrimRight(line);
  std::size_t indent = 0;
  while (indent < line.size() && IsBlank(line[indent])) ++indent;
  parts.indent = line.substr(0, indent);
  line.remove_prefix(indent);
  const std::size_t start = inComment ? 0 : CommentStart(line);
  parts.comment = line.substr(start);
  parts.code = TrimRight(line.substr(0, start));
  if (!parts.comment.empty()) {
    parts.commentContinues = EndsInContinuation(parts.comment);
  } else if (EndsInContinuation(parts.code)) {
    parts.continues = true;
    parts.code = TrimRight(parts.code.substr(0, parts.code.size() - 1));
  }
  return parts;
}

void AppendCanonical(std::string& out, std::string_view code, bool foldCase, std::string_view ownName) {
  bool blank = false;
  for (std::size_t i = 0; i < code.size();) {
    if (IsBlank(code[i])) {
      blank = true, ++i;
      continue;
    }
    const bool first = out.empty() || out.back() == '\n';
    if (blank && !first && !IsTight(code[i]) && !IsTight(out.back())) out += ' ';
    blank = false;
    std::size_t end = i + 1;
    if (code[i] == '"') {
      while (end < code.size() && code[end] != '"') ++end;
      end = std::min(end + 1, code.size());
      out += code.substr(i, end - i);
    } else if (IsWordByte(code[i])) {
      while (end < code.size() && IsWordByte(code[end])) ++end;
      AppendWord(out, code.substr(i, end - i), foldCase, ownName);
    } else {
      out += code[i];
    }
    i = end;
  }
}

std::string CanonicalCode(std::span<const std::string_view> lines, bool foldCase, std::string_view ownName) {
  std::string text;
  std::string joined;
  const auto finish = [&] {
    AppendCanonical(text, joined, foldCase, ownName);
    if (!joined.empty()) text += '\n';
    joined.clear();
  };
  Walk(lines).ForEach([&](const LineParts& parts) {
    if (parts.code.empty() && parts.comment.empty() && !parts.continues && joined.empty()) return;
    if (!joined.empty() && !parts.code.empty()) joined += ' ';
    joined += parts.code;
    if (!parts.continues) finish();
  });
  finish();
  return text;
}

std::string LineForm(std::string_view line, bool inComment, std::uint8_t ignore) {
  const LineParts parts = TakeApart(line, inComment);
  const bool fold = (ignore & trivial::kCase) != 0;
  std::string form;
  if ((ignore & trivial::kLayout) != 0) {
    AppendCanonical(form, parts.code, fold);
  } else {
    form += parts.indent;
    fold ? AppendFolded(form, parts.code) : void(form += parts.code);
  }
  if (parts.continues) form += " _";
  if ((ignore & trivial::kComment) == 0 && !parts.comment.empty()) form.append(1, '\'').append(parts.comment);
  return form;
}

PieceChange KindOfDifference(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines) {
  PieceChange change;
  if (CanonicalCode(oldLines, true) != CanonicalCode(newLines, true)) {
    change.changed = true;
    return change;
  }
  if (CanonicalCode(oldLines, false) != CanonicalCode(newLines, false)) change.trivial |= trivial::kCase;
  if (Comments(oldLines) != Comments(newLines)) change.trivial |= trivial::kComment;
  if (change.trivial == 0 || Layout(oldLines) != Layout(newLines)) change.trivial |= trivial::kLayout;
  return change;
}

PieceChange ComparePieces(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines,
                          std::uint8_t ignore) {
  if (SameLines(oldLines, newLines)) return {};
  PieceChange change = KindOfDifference(oldLines, newLines);
  if (!change.changed && (change.trivial & ~ignore) == 0) return {};
  if (ignore == 0) {
    change.edits = LineDifferences(oldLines, newLines);
    return change;
  }
  const auto formsOf = [ignore](std::span<const std::string_view> lines) {
    std::vector<std::string> forms;
    bool inComment = false;
    for (const std::string_view line : lines) {
      forms.push_back(LineForm(line, inComment, ignore));
      inComment = TakeApart(line, inComment).commentContinues;
    }
    return forms;
  };
  const std::vector<std::string> oldForms = formsOf(oldLines), newForms = formsOf(newLines);
  change.edits = LineDifferences(std::vector<std::string_view>(oldForms.begin(), oldForms.end()),
                                 std::vector<std::string_view>(newForms.begin(), newForms.end()));
  return change;
}

}  // namespace quillmate::symbols
