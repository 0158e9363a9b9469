#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

#include <quillmate/language/parse.h>
#include <quillmate/text/operations.h>

#include "characters_p.h"
#include "file_header_p.h"

namespace quillmate::language {
namespace {

using text::EqualsIgnoreCase;
using text::StartsWithIgnoreCase;

/// Lines one after the other, without their breaks.
class LineReader {
 public:
  LineReader(std::string_view text, std::size_t from) : text_(text), next_(from) {}

  bool Next() {
    if (next_ >= text_.size()) return false;
    start_ = next_;
    std::size_t end = std::min(text_.find_first_of("\r\n", start_), text_.size());
    line_ = text_.substr(start_, end - start_);
    if (end < text_.size() && text_[end] == '\r') ++end;
    if (end < text_.size() && text_[end] == '\n' && (end == start_ + line_.size() || text_[end - 1] == '\r')) ++end;
    next_ = end;
    return true;
  }
  std::size_t Start() const noexcept { return start_; }
  std::size_t End() const noexcept { return next_; }
  std::string_view Trimmed() const noexcept {
    std::string_view line = line_;
    while (!line.empty() && IsNarrowBlank(line.front())) line.remove_prefix(1);
    while (!line.empty() && IsNarrowBlank(line.back())) line.remove_suffix(1);
    return line;
  }

 private:
  std::string_view text_, line_;
  std::size_t start_ = 0, next_;
};

/// The first word of a text and what follows it.
struct Split {
  std::string_view word, rest;
};

Split SplitWord(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && !IsNarrowBlank(text[end]) && text[end] != '=') ++end;
  std::size_t rest = end;
  while (rest < text.size() && IsNarrowBlank(text[rest])) ++rest;
  return {text.substr(0, end), text.substr(rest)};
}

/// The value of `name = value`, its quotes taken off.
std::string_view PropertyValue(std::string_view rest) {
  if (!rest.starts_with('=')) return {};
  rest.remove_prefix(1);
  while (!rest.empty() && IsNarrowBlank(rest.front())) rest.remove_prefix(1);
  if (!rest.starts_with('"')) return rest.substr(0, rest.find_first_of(" \t'"));
  rest.remove_prefix(1);
  return rest.substr(0, rest.rfind('"'));
}

bool IsVersion(std::string_view line) {
  const Split split = SplitWord(line);
  return EqualsIgnoreCase(split.word, "VERSION") && !split.rest.empty() && IsAsciiDigit(split.rest.front());
}

bool IsAccessVersion(std::string_view line) {
  const Split split = SplitWord(line);
  return EqualsIgnoreCase(split.word, "Version") && split.rest.starts_with('=');
}

bool IsAttribute(std::string_view line) { return StartsWithIgnoreCase(line, "Attribute VB_"); }

/// "BEGIN", "Begin VB.Form frmMain", "Begin {GUID} Name": a block of its own, no property that is called so.
bool IsBegin(std::string_view line) {
  const Split split = SplitWord(line);
  return EqualsIgnoreCase(split.word, "Begin") && !split.rest.starts_with('=');
}

/// Where the header of a module file ends; `from` when the text has none.
std::size_t FindHeaderEnd(std::string_view text, std::size_t from) {
  LineReader reader(text, from);
  std::size_t end = from;
  int depth = 0;
  bool versioned = false;
  bool begun = false;
  while (reader.Next()) {
    const std::string_view line = reader.Trimmed();
    if (depth > 0) {
      if (IsAttribute(line)) return reader.Start();
      if (IsBegin(line)) ++depth;
      if (EqualsIgnoreCase(line, "End") && --depth == 0) return reader.End();
      continue;
    }
    if (line.empty()) continue;
    if (!versioned && !begun && IsVersion(line)) {
      versioned = true;
      end = reader.End();
    } else if (versioned && StartsWithIgnoreCase(line, "Object") && line.find('=') != std::string_view::npos) {
      end = reader.End();
    } else if (!begun && IsBegin(line) && (versioned || line.find('(') == std::string_view::npos)) {
      begun = true;
      depth = 1;
    } else {
      return end;
    }
  }
  return end;
}

class HeaderReader {
 public:
  HeaderReader(std::string_view text, NamePool& names, Module& module) : text_(text), names_(names), module_(module) {}

  /// The lines from `from` to `to`.
  void Read(std::size_t from, std::size_t to, bool access) {
    LineReader reader(text_.substr(0, to), from);
    while (reader.Next()) {
      PhysicalLine& line = module_.lines.emplace_back();
      line.offset = static_cast<std::uint32_t>(reader.Start());
      line.lineClass = LineClass::kHeader;
      ReadLine(reader.Trimmed(), access);
    }
  }

 private:
  /// A block that is open; `control` kNone for one that describes none.
  struct Block {
    Index control;
    Index around;  ///< the control around it
  };

  void ReadLine(std::string_view line, bool access) {
    const Split split = SplitWord(line);
    if (IsBegin(line)) {
      Open(split.rest, access);
    } else if (access && line.ends_with("= Begin")) {
      blocks_.push_back({kNone, Around()});
    } else if (EqualsIgnoreCase(line, "End")) {
      Close();
    } else if (EqualsIgnoreCase(split.word, "BeginProperty")) {
      ++properties_;
    } else if (EqualsIgnoreCase(split.word, "EndProperty")) {
      properties_ -= properties_ > 0;
    } else if (IsVersion(line)) {
      if (EqualsIgnoreCase(SplitWord(split.rest).rest, "CLASS")) module_.facts.kind = ModuleKind::kClass;
    } else if (!blocks_.empty() && blocks_.back().control != kNone && properties_ == 0) {
      ReadProperty(split, access);
    }
  }

  Index Around() const {
    if (blocks_.empty()) return kNone;
    return blocks_.back().control != kNone ? blocks_.back().control : blocks_.back().around;
  }

  void Open(std::string_view rest, bool access) {
    const Split type = SplitWord(rest);
    if (type.word.empty()) {
      blocks_.push_back({kNone, Around()});
      return;
    }
    const auto index = static_cast<Index>(module_.controls.size());
    Control& control = module_.controls.emplace_back();
    control.name = kNone;
    control.type = SpanOf(type.word);
    control.parent = Around();
    control.index = -1;
    control.line = static_cast<std::uint32_t>(module_.lines.size());
    control.menu = EqualsIgnoreCase(type.word, "VB.Menu");
    if (const std::string_view name = SplitWord(type.rest).word; !name.empty()) Name(control, name);
    if (index == 0) SetKind(type.word, access);
    blocks_.push_back({index, Around()});
  }

  void Close() {
    if (blocks_.empty()) return;
    const Index control = blocks_.back().control;
    blocks_.pop_back();
    // Without a name it only says how the controls of its kind begin.
    const bool nameless = control != kNone && control > 0 && module_.controls[control].name == kNone;
    if (!nameless || control + 1 != module_.controls.size()) return;
    std::vector<EventProperty>& events = module_.eventProperties;
    while (!events.empty() && events.back().control == control) events.pop_back();
    module_.controls.pop_back();
  }

  void ReadProperty(const Split& split, bool access) {
    const Index index = blocks_.back().control;
    Control& control = module_.controls[index];
    const std::string_view value = PropertyValue(split.rest);
    if (EqualsIgnoreCase(split.word, "Index") && !access) {
      std::from_chars(value.data(), value.data() + value.size(), control.index);
    }
    if (!access || value.empty()) return;
    if (EqualsIgnoreCase(split.word, "Name")) Name(control, value);
    if (EqualsIgnoreCase(split.word, "EventProcPrefix")) control.eventPrefix = SpanOf(value);
    const bool event = StartsWithIgnoreCase(split.word, "On") || StartsWithIgnoreCase(split.word, "After") ||
                       StartsWithIgnoreCase(split.word, "Before");
    if (!event || split.rest.find('"') == std::string_view::npos) return;
    module_.eventProperties.push_back(
        {index, SpanOf(split.word), SpanOf(value), static_cast<std::uint32_t>(module_.lines.size())});
  }

  void Name(Control& control, std::string_view name) {
    control.nameText = SpanOf(name);
    control.name = names_.Copied(name);
  }

  void SetKind(std::string_view type, bool access) {
    ModuleKind& kind = module_.facts.kind;
    if (access) {
      kind = ModuleKind::kDocument;
    } else if (EqualsIgnoreCase(type, "VB.UserControl")) {
      kind = ModuleKind::kUserControl;
    } else if (EqualsIgnoreCase(type, "VB.PropertyPage")) {
      kind = ModuleKind::kPropertyPage;
    } else if (EqualsIgnoreCase(type, "VB.UserDocument")) {
      kind = ModuleKind::kUserDocument;
    } else if (StartsWithIgnoreCase(type, "VB.") || StartsWithIgnoreCase(type, "{C62A69F0-")) {
      kind = ModuleKind::kForm;
    } else {
      kind = ModuleKind::kDesigner;
    }
  }

  Span SpanOf(std::string_view part) const {
    return {static_cast<std::uint32_t>(part.data() - text_.data()), static_cast<std::uint32_t>(part.size())};
  }

  std::string_view text_;
  NamePool& names_;
  Module& module_;
  std::vector<Block> blocks_;
  std::uint32_t properties_ = 0;  ///< BeginProperty without its EndProperty
};

/// The first line that is not blank.
std::string_view FirstLine(std::string_view text, std::size_t from) {
  LineReader reader(text, from);
  while (reader.Next()) {
    if (!reader.Trimmed().empty()) return reader.Trimmed();
  }
  return {};
}

/// After the line "CodeBehindForm"; without it an export holds no code.
std::size_t FindAccessCode(std::string_view text, std::size_t from) {
  LineReader reader(text, from);
  while (reader.Next()) {
    if (EqualsIgnoreCase(reader.Trimmed(), "CodeBehindForm")) return reader.End();
  }
  return text.size();
}

}  // namespace

std::size_t ReadFileHeader(std::string_view text, std::size_t from, NamePool& names, Module& module) {
  const bool access = IsAccessVersion(FirstLine(text, from));
  const std::size_t end = access ? FindAccessCode(text, from) : FindHeaderEnd(text, from);
  if (end == from) return from;
  module.facts.accessExport = access;
  module.facts.hasHeader = true;
  HeaderReader(text, names, module).Read(from, end, access);
  return end;
}

}  // namespace quillmate::language
