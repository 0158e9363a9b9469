#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include <quillmate/files/source_text.h>
#include <quillmate/office/component_type.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

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

bool IsPlainAscii(std::string_view bytes) noexcept {
  std::uint64_t seen = 0;
  std::size_t i = 0;
  for (; i + sizeof seen <= bytes.size(); i += sizeof seen) {
    std::uint64_t block = 0;
    std::memcpy(&block, bytes.data() + i, sizeof block);
    seen |= block;
  }
  for (; i < bytes.size(); ++i) seen |= static_cast<unsigned char>(bytes[i]);
  return (seen & 0x8080808080808080U) == 0;
}

bool IsAttributeLine(std::string_view line) noexcept {
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

/// Reads on behind the line that opens the outer block; false when the block never ends.
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

/// The text behind its header; the whole text when there is none.
std::string_view BehindHeader(std::string_view text) noexcept {
  text::LineReader lines(text);
  std::string_view line;
  if (!lines.Next(line) || !IsVersionLine(line)) return text;
  std::string_view rest = lines.Rest();
  while (lines.Next(line) && (IsObjectLine(line) || TrimIndent(line).empty())) {
    if (!TrimIndent(line).empty()) rest = lines.Rest();
  }
  if (BlockStep(line) != 1) return rest;
  return SkipBlock(lines) ? lines.Rest() : text;
}

// Attributes --------------------------------------------------------------------------------------------------------

/// What the Attribute lines of a file say about the module itself.
struct Attributes {
  std::string_view name;
  bool predeclared = false;
  bool exposed = false;
  bool creatable = false;
  bool documentBase = false;

  bool IsDocument() const noexcept { return documentBase || (predeclared && exposed && !creatable); }
};

std::string_view Unquote(std::string_view value) noexcept {
  if (value.starts_with('"')) value = text::TextBefore(value.substr(1), "\"");
  return value;
}

void TakeAttribute(std::string_view line, Attributes& attributes) noexcept {
  line = text::TrimLeft(line).substr(kAttribute.size());
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = TrimIndent(line.substr(0, equals));
  const std::string_view value = Unquote(TrimIndent(line.substr(equals + 1)));
  const bool isTrue = text::EqualsIgnoreCase(value, "True");
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

/// `code` is nothing when only the summary is wanted.
ModuleFile TakeApart(std::string_view text, std::string_view extension, std::string* code) {
  const std::string_view body = BehindHeader(text);
  if (code != nullptr) code->reserve(body.size() + body.size() / 16);
  text::LineReader lines(body);
  LineCounter counter;
  Attributes attributes;
  for (std::string_view line; lines.Next(line);) {
    if (IsAttributeLine(line)) {
      TakeAttribute(line, attributes);
      continue;
    }
    if (code != nullptr) {
      if (counter.lines > 0) *code += text::kLineBreak;
      *code += line;
    }
    counter.Add(line);
  }
  ModuleFile file;
  file.name = attributes.name;
  file.type = TypeOfExtension(extension);
  if (file.type == kClassModule && attributes.IsDocument()) file.type = kHostDocument;
  file.lineCount = counter.Count();
  if (code != nullptr && code->ends_with(text::kLineBreak)) code->resize(code->size() - text::kLineBreak.size());
  return file;
}

bool IsUtf16(std::string_view bytes) noexcept { return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"); }

}  // namespace

ModuleFile ParseModuleFile(std::string_view bytes, std::string_view extension) {
  // Most files are plain ASCII, which needs no decoding; the line reader takes every line break.
  std::string decoded;
  if (!IsPlainAscii(bytes)) {
    decoded = files::DecodeSourceText(bytes);
    bytes = decoded;
  }
  std::string code;
  ModuleFile file = TakeApart(bytes, extension, &code);
  file.code = std::move(code);
  return file;
}

ModuleFile SummarizeModuleFile(std::string_view bytes, std::string_view extension) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (!IsUtf16(bytes)) {
    // Neither line breaks nor the words looked for depend on the encoding of the rest; only the name does.
    ModuleFile file =
        TakeApart(bytes.starts_with(kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes, extension, nullptr);
    if (IsPlainAscii(file.name)) return file;
  }
  return TakeApart(files::DecodeSourceText(bytes), extension, nullptr);
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
