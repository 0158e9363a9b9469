#include <algorithm>
#include <utility>

#include <quillmate/text/operations.h>

#include "site_tags_p.h"

namespace quillmate::output {
namespace {

struct Tag {
  std::string_view word;   ///< lower case
  std::string_view title;  ///< empty: the text of the comment itself
  bool named;              ///< a name comes first
};

constexpr Tag kXmlTags[] = {
    {"summary", "", false},          {"param", "Parameter", true},   {"returns", "Rückgabe", false},
    {"return", "Rückgabe", false},   {"value", "Wert", false},       {"remarks", "Anmerkung", false},
    {"remark", "Anmerkung", false},  {"example", "Beispiel", false}, {"exception", "Fehler", true},
    {"seealso", "Siehe auch", true}, {"author", "Autor", false},     {"date", "Datum", false},
    {"version", "Version", false},
};

constexpr Tag kWordTags[] = {
    {"brief", "", false},
    {"short", "", false},
    {"details", "", false},
    {"description", "", false},
    {"moduledescription", "", false},
    {"purpose", "", false},
    {"param", "Parameter", true},
    {"parameter", "Parameter", true},
    {"return", "Rückgabe", false},
    {"returns", "Rückgabe", false},
    {"result", "Rückgabe", false},
    {"retval", "Rückgabe", true},
    {"author", "Autor", false},
    {"authors", "Autor", false},
    {"date", "Datum", false},
    {"version", "Version", false},
    {"since", "Seit", false},
    {"see", "Siehe auch", false},
    {"sa", "Siehe auch", false},
    {"todo", "Offen", false},
    {"note", "Anmerkung", false},
    {"remark", "Anmerkung", false},
    {"remarks", "Anmerkung", false},
    {"warning", "Warnung", false},
    {"deprecated", "Veraltet", false},
    {"example", "Beispiel", false},
    {"throws", "Fehler", true},
    {"throw", "Fehler", true},
    {"exception", "Fehler", true},
    {"copyright", "Urheberrecht", false},
};

template <std::size_t Size>
const Tag* Find(const Tag (&tags)[Size], std::string_view word) {
  const auto found = std::ranges::find_if(tags, [&](const Tag& tag) { return text::EqualsIgnoreCase(tag.word, word); });
  return found == std::end(tags) ? nullptr : &*found;
}

bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string_view WordAt(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, end);
}

std::string_view Trim(std::string_view text) noexcept {
  constexpr std::string_view kBlanks = " \t\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

void AddParagraph(std::string& text, std::string_view more) {
  more = Trim(more);
  if (more.empty()) return;
  if (!text.empty()) text += "\n\n";
  text += more;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : "\n").append(line);
  return text;
}

// -------------------------------------------------------------------------------------------------------------- XML

/// `<`, a word, attributes, `>`.
struct XmlTag {
  std::string_view word;
  std::string_view name;  ///< value of "name" or "cref"
  std::size_t length = 0;
  bool isEnd = false;
  bool isEmpty = false;
};

std::string_view Value(std::string_view attributes, std::string_view key) {
  const std::size_t at = attributes.find(key);
  if (at == std::string_view::npos) return {};
  std::string_view rest = Trim(attributes.substr(at + key.size()));
  if (!rest.starts_with('=')) return {};
  rest = Trim(rest.substr(1));
  if (rest.empty() || (rest.front() != '"' && rest.front() != '\'')) return WordAt(rest);
  const std::size_t end = rest.find(rest.front(), 1);
  return rest.substr(1, end == std::string_view::npos ? end : end - 1);
}

/// Length 0 when there is no tag.
XmlTag TagAt(std::string_view text) {
  constexpr std::size_t kLongest = 300;
  XmlTag tag;
  const std::size_t end = text.substr(0, kLongest).find('>');
  if (end == std::string_view::npos) return tag;
  std::string_view inner = text.substr(1, end - 1);
  tag.isEnd = inner.starts_with('/');
  if (tag.isEnd) inner.remove_prefix(1);
  tag.isEmpty = inner.ends_with('/');
  tag.word = WordAt(inner);
  if (tag.word.empty()) return tag;
  tag.name = Value(inner, "name");
  if (tag.name.empty()) tag.name = Value(inner, "cref");
  if (tag.name.empty()) tag.name = Value(inner, "langword");
  tag.length = end + 1;
  return tag;
}

/// Tags that only say how the text looks.
bool IsLook(std::string_view word) {
  constexpr std::string_view kWords[] = {"para", "c",          "code",         "see", "paramref", "list", "item",
                                         "term", "listheader", "typeparamref", "b",   "i",        "br"};
  return std::ranges::any_of(kWords, [&](std::string_view known) { return text::EqualsIgnoreCase(known, word); });
}

std::string WithoutEntities(std::string text) {
  for (const auto& [entity, character] :
       {std::pair<std::string_view, std::string_view>{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}) {
    if (text.find(entity) != std::string::npos) text = text::ReplaceAll(text, entity, character);
  }
  return text;
}

class XmlReader {
 public:
  explicit XmlReader(std::string text) : text_(std::move(text)) {}

  TaggedComment Read() {
    for (std::size_t at = 0; at < text_.size();) {
      const std::size_t next = std::min(text_.find('<', at), text_.size());
      piece_.append(text_, at, next - at);
      at = next;
      if (at == text_.size()) break;
      const XmlTag tag = TagAt(std::string_view(text_).substr(at));
      if (tag.length == 0 || !Take(tag)) {
        piece_ += '<';
        ++at;
      } else {
        at += tag.length;
      }
    }
    End();
    return std::move(comment_);
  }

 private:
  bool Take(const XmlTag& tag) {
    if (const Tag* const known = Find(kXmlTags, tag.word)) {
      End();
      if (!tag.isEnd) {
        open_ = known;
        name_ = tag.name;
        if (tag.isEmpty) End();
      }
      return true;
    }
    if (!IsLook(tag.word)) return false;
    if (tag.isEnd) return true;
    if (text::EqualsIgnoreCase(tag.word, "para") || text::EqualsIgnoreCase(tag.word, "br")) piece_ += '\n';
    piece_ += tag.name;
    return true;
  }

  /// What has been gathered belongs to the tag that was open.
  void End() {
    const std::string text = WithoutEntities(std::string(Trim(piece_)));
    piece_.clear();
    const Tag* const tag = std::exchange(open_, nullptr);
    if (tag == nullptr || tag->title.empty()) return AddParagraph(comment_.text, text);
    if (!text.empty() || !name_.empty()) comment_.items.push_back({tag->title, std::exchange(name_, {}), text});
  }

  const std::string text_;
  std::string piece_;
  const Tag* open_ = nullptr;
  std::string name_;
  TaggedComment comment_;
};

bool IsXml(const std::string& text) {
  for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    const std::string_view word = WordAt(std::string_view(text).substr(at + 1));
    if (!word.empty() && Find(kXmlTags, word) != nullptr && TagAt(std::string_view(text).substr(at)).length > 0) {
      return true;
    }
  }
  return false;
}

// ------------------------------------------------------------------------------------------------------------ words

/// The tag that a line begins with, and what follows it; null for other lines.
std::pair<const Tag*, std::string_view> WordTag(std::string_view line) {
  if (line.size() < 2 || (line.front() != '@' && line.front() != '\\')) return {nullptr, line};
  const std::string_view word = WordAt(line.substr(1));
  const Tag* const tag = Find(kWordTags, word);
  std::string_view rest = line.substr(1 + word.size());
  // "\param[in] x", "@param {Long} x"
  for (const auto& [open, close] : {std::pair('[', ']'), {'{', '}'}}) {
    rest = Trim(rest);
    const std::size_t end = rest.find(close);
    if (rest.starts_with(open) && end != std::string_view::npos) rest.remove_prefix(end + 1);
  }
  rest = Trim(rest);
  // "@Description("...")"
  if (rest.starts_with("(\"") && rest.ends_with("\")")) rest = rest.substr(2, rest.size() - 4);
  if (rest.starts_with(':')) rest = Trim(rest.substr(1));
  return {tag, rest};
}

TaggedComment ReadWords(const std::vector<std::string>& lines) {
  TaggedComment comment;
  const Tag* open = nullptr;
  std::string piece, name;
  const auto end = [&] {
    const Tag* const tag = std::exchange(open, nullptr);
    if (tag == nullptr || tag->title.empty()) {
      AddParagraph(comment.text, piece);
    } else if (!piece.empty() || !name.empty()) {
      comment.items.push_back({tag->title, name, std::string(Trim(piece))});
    }
    piece.clear();
    name.clear();
  };
  for (const std::string& line : lines) {
    auto [tag, rest] = WordTag(line);
    if (tag != nullptr || line.empty()) end();
    if (tag != nullptr) {
      open = tag;
      if (tag->named) {
        name = rest.substr(0, rest.find_first_of(" \t"));
        rest = Trim(rest.substr(name.size()));
        if (rest.starts_with("- ")) rest = Trim(rest.substr(2));
      }
    }
    if (!line.empty()) piece.append(piece.empty() ? "" : "\n").append(tag == nullptr ? line : std::string(rest));
  }
  end();
  return comment;
}

}  // namespace

TaggedComment ReadTags(const std::vector<std::string>& lines) {
  const bool hasWords =
      std::ranges::any_of(lines, [](const std::string& line) { return WordTag(line).first != nullptr; });
  if (hasWords) return ReadWords(lines);
  std::string text = Joined(lines);
  if (IsXml(text)) return XmlReader(std::move(text)).Read();
  return {std::move(text), {}};
}

}  // namespace quillmate::output
