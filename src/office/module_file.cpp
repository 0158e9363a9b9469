#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/files/source_text.h>
#include <quillmate/office/component_type.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/text_export.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::office {
namespace {

constexpr std::string_view kAttribute = "Attribute ";

struct ExtensionType {
  std::string_view extension;
  int type;
};
constexpr std::array kModuleExtensions{ExtensionType{"bas", kStdModule},      ExtensionType{"cls", kClassModule},
                                       ExtensionType{"frm", kMSForm},         ExtensionType{"ctl", kOtherComponent},
                                       ExtensionType{"pag", kOtherComponent}, ExtensionType{"dob", kOtherComponent},
                                       ExtensionType{"dsr", kOtherComponent}};

std::string_view WithoutDot(std::string_view extension) noexcept {
  return extension.starts_with('.') ? extension.substr(1) : extension;
}

int TypeOfExtension(std::string_view extension) noexcept {
  const auto* found = std::find_if(kModuleExtensions.begin(), kModuleExtensions.end(), [&](const ExtensionType& entry) {
    return text::EqualsIgnoreCase(entry.extension, WithoutDot(extension));
  });
  return found == kModuleExtensions.end() ? 0 : found->type;
}

bool IsAttributeLine(std::string_view line) noexcept {
  std::size_t first = 0;
  while (first < line.size() && line[first] == ' ') ++first;
  if (first == line.size() || (line[first] != 'A' && line[first] != 'a')) return false;
  return text::StartsWithIgnoreCase(text::TrimLeft(line), kAttribute);
}

std::string_view TrimIndent(std::string_view line) noexcept {
  const std::size_t start = std::min(line.find_first_not_of(" \t"), line.size());
  line.remove_prefix(start);
  return line.substr(0, line.find_last_not_of(" \t") + 1);
}

// Header ------------------------------------------------------------------------------------------------------------

bool IsVersionLine(std::string_view line) noexcept {
  constexpr std::string_view kVersion = "VERSION ";
  line = TrimIndent(line);
  if (!text::StartsWithIgnoreCase(line, kVersion)) return false;
  line = text::TrimLeft(line.substr(kVersion.size()));
  return !line.empty() && line[0] >= '0' && line[0] <= '9';
}

/// +1 for a line that opens a block of the header, -1 for one that closes it.
int BlockStep(std::string_view line) noexcept {
  line = TrimIndent(line);
  const std::size_t wordEnd = std::min(line.find_first_of(" \t"), line.size());
  const std::string_view word = line.substr(0, wordEnd);
  if (text::EqualsIgnoreCase(line, "End") || text::EqualsIgnoreCase(line, "EndProperty")) return -1;
  const bool opens = text::EqualsIgnoreCase(word, "Begin") || text::EqualsIgnoreCase(word, "BeginProperty");
  // "Begin = 3" sets a property of that name.
  return opens && !TrimIndent(line.substr(wordEnd)).starts_with('=') ? 1 : 0;
}

/// Reads on after the line that opens the outer block; false when the block never ends.
bool SkipBlock(text::LineReader& lines) noexcept {
  int depth = 1;
  std::string_view line;
  while (depth > 0 && lines.Next(line)) depth += BlockStep(line);
  return depth == 0;
}

bool IsObjectLine(std::string_view line) noexcept {
  constexpr std::string_view kObject = "Object";
  line = TrimIndent(line);
  return text::StartsWithIgnoreCase(line, kObject) && TrimIndent(line.substr(kObject.size())).starts_with('=');
}

/// "Version =20": the first line of an Access text export.
bool IsAccessVersionLine(std::string_view line) noexcept {
  constexpr std::string_view kVersion = "Version";
  line = TrimIndent(line);
  return text::StartsWithIgnoreCase(line, kVersion) && TrimIndent(line.substr(kVersion.size())).starts_with('=');
}

/// The code of an Access text export; nothing when it holds none.
std::string_view BehindAccessHeader(text::LineReader& lines) noexcept {
  for (std::string_view line; lines.Next(line);) {
    if (text::EqualsIgnoreCase(TrimIndent(line), "CodeBehindForm")) return lines.Rest();
  }
  return lines.Rest();
}

struct Parts {
  /// With the line break after it; empty when there is none.
  std::string_view header;
  std::string_view body;
  bool ofAccess = false;
};

/// The text after a header of VB, which begins with the line that has just been read; the whole text when the header
/// never ends.
std::string_view BehindVbHeader(std::string_view text, text::LineReader& lines) noexcept {
  std::string_view line;
  std::string_view rest = lines.Rest();
  while (lines.Next(line) && (IsObjectLine(line) || TrimIndent(line).empty())) {
    if (!TrimIndent(line).empty()) rest = lines.Rest();
  }
  if (BlockStep(line) != 1) return rest;
  return SkipBlock(lines) ? lines.Rest() : text;
}

Parts TakeHeaderOff(std::string_view text) noexcept {
  text::LineReader lines(text);
  std::string_view line;
  lines.Next(line);
  Parts parts;
  parts.body = text;
  parts.ofAccess = IsAccessVersionLine(line);
  if (parts.ofAccess) parts.body = BehindAccessHeader(lines);
  if (IsVersionLine(line)) parts.body = BehindVbHeader(text, lines);
  parts.header = text.substr(0, text.size() - parts.body.size());
  return parts;
}

// Attributes --------------------------------------------------------------------------------------------------------

/// What the Attribute lines of a file say about the module itself.
struct Attributes {
  std::string_view name;
  bool predeclared = false;
  bool exposed = false;
  bool creatable = false;
  bool documentBase = false;
  /// Some attribute that only classes have.
  bool ofClass = false;

  bool IsDocument() const noexcept { return documentBase || (predeclared && exposed && !creatable); }
};

std::string_view Unquote(std::string_view value) noexcept {
  if (value.starts_with('"')) value = text::TextBefore(value.substr(1), "\"");
  return value;
}

bool IsClassAttribute(std::string_view key) noexcept {
  constexpr std::array kKeys{"VB_GlobalNameSpace", "VB_Creatable", "VB_PredeclaredId", "VB_Exposed"};
  return std::ranges::any_of(kKeys, [&](std::string_view known) { return text::EqualsIgnoreCase(key, known); });
}

void TakeAttribute(std::string_view line, Attributes& attributes) noexcept {
  line = text::TrimLeft(line).substr(kAttribute.size());
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = TrimIndent(line.substr(0, equals));
  const std::string_view value = Unquote(TrimIndent(line.substr(equals + 1)));
  const bool isTrue = text::EqualsIgnoreCase(value, "True");
  attributes.ofClass = attributes.ofClass || IsClassAttribute(key);
  if (text::EqualsIgnoreCase(key, "VB_Name")) {
    if (attributes.name.empty()) attributes.name = value;
  } else if (text::EqualsIgnoreCase(key, "VB_PredeclaredId")) {
    attributes.predeclared = isTrue;
  } else if (text::EqualsIgnoreCase(key, "VB_Exposed")) {
    attributes.exposed = isTrue;
  } else if (text::EqualsIgnoreCase(key, "VB_Creatable")) {
    attributes.creatable = isTrue;
  } else if (text::EqualsIgnoreCase(key, "VB_Base")) {
    attributes.documentBase = value.starts_with("0{0002");
  }
}

// Code --------------------------------------------------------------------------------------------------------------

/// Counts the kept lines; the joined text loses its one trailing line break.
struct LineCounter {
  int lines = 0;
  bool anyText = false;
  bool lastEmpty = false;

  void Add(std::string_view line) noexcept {
    ++lines;
    anyText = anyText || !line.empty();
    lastEmpty = line.empty();
  }
  int Count() const noexcept {
    const int kept = lines > 1 && lastEmpty ? lines - 1 : lines;
    return kept == 1 && !anyText ? 0 : kept;
  }
};

/// Collects what the editor hides.
class HiddenCollector {
 public:
  void Add(std::string_view line, int before) {
    if (lines_.empty() || lines_.back().line != before) {
      lines_.push_back({before, std::string(line)});
    } else {
      lines_.back().text.append(1, '\n').append(line);
    }
  }
  void AddHeader(const Parts& parts) {
    std::string_view header = parts.header;
    if (header.ends_with('\n')) header.remove_suffix(1);
    if (header.ends_with('\r')) header.remove_suffix(1);
    text::LineReader lines(header);
    for (std::string_view line; !parts.header.empty() && lines.Next(line);) {
      const bool binary = parts.ofAccess && TrimIndent(line).starts_with("0x");
      Add(binary ? std::string_view() : line, 1);
    }
  }
  std::vector<HiddenLines> Take() { return std::move(lines_); }

 private:
  std::vector<HiddenLines> lines_;
};

/// Joins lines with CR LF; runs that are joined like that in their source are copied at once.
class LineJoiner {
 public:
  explicit LineJoiner(std::string& text) noexcept : text_(text) {}

  void Add(std::string_view line) {
    const bool follows = !first_ && Between(line) == text::kLineBreak;
    if (follows) {
      run_ = {run_.data(), static_cast<std::size_t>(line.data() + line.size() - run_.data())};
      return;
    }
    Flush();
    if (!first_) text_ += text::kLineBreak;
    run_ = line;
    first_ = false;
  }
  void Flush() {
    text_ += run_;
    run_ = {};
  }

 private:
  /// What precedes the line from the end of the run on, if that is not more than a line break.
  std::string_view Between(std::string_view line) const noexcept {
    const char* const end = run_.data() + run_.size();
    const std::ptrdiff_t length = line.data() - end;
    return run_.data() == nullptr || length != 2 ? std::string_view() : std::string_view(end, 2);
  }

  std::string& text_;
  std::string_view run_;
  bool first_ = true;
};

/// In the encoding of the text; with `summary` only the number of lines.
EditorText TakeLines(const Parts& parts, bool summary, Attributes& attributes) {
  EditorText text;
  HiddenCollector hidden;
  LineJoiner joiner(text.code);
  if (!summary) {
    text.code.reserve(parts.body.size());
    hidden.AddHeader(parts);
  }
  text::LineReader lines(parts.body);
  LineCounter counter;
  for (std::string_view line; lines.Next(line);) {
    if (IsAttributeLine(line)) {
      TakeAttribute(line, attributes);
      if (!summary) hidden.Add(line, counter.lines + 1);
      continue;
    }
    if (!summary) joiner.Add(line);
    counter.Add(line);
  }
  joiner.Flush();
  text.lineCount = counter.Count();
  if (text.code.ends_with(text::kLineBreak)) text.code.resize(text.code.size() - text::kLineBreak.size());
  text.hidden = hidden.Take();
  return text;
}

/// Adds what the characters tell that Windows-1252 lacks; without any, the hidden lines turn into UTF-8.
void AddOriginal(const Parts& original, EditorText& text) {
  if (original.body.empty() && original.header.empty()) {
    for (HiddenLines& lines : text.hidden) {
      if (!text::IsAscii(lines.text)) lines.text = text::Utf8FromCode(lines.text);
    }
    return;
  }
  Attributes ignored;
  EditorText whole = TakeLines(original, false, ignored);
  text.hidden = std::move(whole.hidden);
  text.replaced = text::CountReplaced(whole.code);
  if (text.replaced > 0) text.original = std::move(whole.code);
}

std::string NameInUtf8(const Parts& original, const Attributes& attributes) {
  if (original.body.empty()) return text::Utf8FromCode(attributes.name);
  Attributes ofOriginal;
  TakeLines(original, true, ofOriginal);
  return std::string(ofOriginal.name);
}

/// Of a text export of Access, whose extension says nothing.
void TakeKindFromContent(std::string_view text, const Parts& parts, const Attributes& attributes, ModuleFile& file) {
  file.namePrefix = ModuleNamePrefix(TextExportOf(text));
  if (parts.ofAccess) {
    file.type = kHostDocument;
  } else {
    file.type = attributes.ofClass || !parts.header.empty() ? kClassModule : kStdModule;
  }
}

/// `original` is empty when the text holds all of it.
ModuleFile TakeApart(std::string_view text, std::string_view original, std::string_view extension, bool summary) {
  Attributes attributes;
  ModuleFile file;
  const Parts ofOriginal = TakeHeaderOff(original);
  const Parts parts = TakeHeaderOff(text);
  static_cast<EditorText&>(file) = TakeLines(parts, summary, attributes);
  file.name = attributes.name;
  file.utf8Name = NameInUtf8(ofOriginal, attributes);
  file.type = TypeOfExtension(extension);
  if (text::EqualsIgnoreCase(WithoutDot(extension), kTextExportExtension)) {
    TakeKindFromContent(text, parts, attributes, file);
  }
  if (file.type == kClassModule && attributes.IsDocument()) file.type = kHostDocument;
  if (!summary) AddOriginal(ofOriginal, file);
  return file;
}

bool IsUtf16(std::string_view bytes) noexcept { return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"); }

}  // namespace

ModuleFile ParseModuleFile(std::string_view bytes, std::string_view extension) {
  // Most files need no decoding; the line reader takes every line break.
  if (files::IsSingleByteText(bytes)) return TakeApart(bytes, {}, extension, false);
  const files::DecodedText text = files::DecodeWithOriginal(bytes);
  return TakeApart(text.code, text.original, extension, false);
}

ModuleFile SummarizeModuleFile(std::string_view bytes, std::string_view extension) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (!IsUtf16(bytes)) {
    // Neither line breaks nor the words looked for depend on the encoding of the rest; only the name does.
    ModuleFile file =
        TakeApart(bytes.starts_with(kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes, {}, extension, true);
    if (text::IsAscii(file.name)) return file;
  }
  const files::DecodedText text = files::DecodeWithOriginal(bytes);
  return TakeApart(text.code, text.original, extension, true);
}

EditorText TakeEditorText(const files::DecodedText& text) {
  Attributes ignored;
  EditorText editor = TakeLines({{}, text.code}, false, ignored);
  AddOriginal({{}, text.original}, editor);
  return editor;
}

bool IsModuleFileExtension(std::string_view extension) { return TypeOfExtension(extension) != 0; }

std::string DropAttributeLines(std::string_view code) {
  std::string out;
  out.reserve(code.size());
  bool first = true;
  for (std::size_t at = 0; at <= code.size();) {
    const std::size_t end = std::min(code.find(text::kLineBreak, at), code.size());
    const std::string_view line = code.substr(at, end - at);
    at = end + text::kLineBreak.size();
    if (IsAttributeLine(line)) continue;
    if (!first) out += text::kLineBreak;
    out += line;
    first = false;
  }
  return out;
}

int CountLines(std::string_view code) noexcept {
  if (code.empty()) return 0;
  int lines = 1;
  for (std::size_t at = code.find(text::kLineBreak); at != std::string_view::npos;
       at = code.find(text::kLineBreak, at + text::kLineBreak.size())) {
    ++lines;
  }
  return lines;
}

}  // namespace quillmate::office
