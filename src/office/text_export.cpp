#include <algorithm>
#include <array>
#include <cstddef>
#include <unordered_set>

#include <quillmate/files/source_text.h>
#include <quillmate/office/text_export.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::office {
namespace {

std::string_view Trimmed(std::string_view line) noexcept {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  return line.substr(0, line.find_last_not_of(" \t") + 1);
}

/// Cuts the first word off, up to a blank, "=" or an apostrophe.
std::string_view TakeWord(std::string_view& line) noexcept {
  const std::string_view word = line.substr(0, line.find_first_of(" \t='"));
  line = Trimmed(line.substr(word.size()));
  return word;
}

bool Is(std::string_view word, std::string_view other) noexcept { return text::EqualsIgnoreCase(word, other); }

/// "Version =20", "Operation =1": a name and a whole number.
bool IsNumberProperty(std::string_view line, std::string_view name) noexcept {
  if (!Is(TakeWord(line), name) || !line.starts_with('=')) return false;
  line = Trimmed(line.substr(1));
  return !line.empty() && line.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The statement as a whole, with nothing after it but a comment: prose may begin with the same word.
bool IsOptionLine(std::string_view line) noexcept {
  if (!Is(TakeWord(line), "Option")) return false;
  const std::string_view what = TakeWord(line);
  bool known = Is(what, "Explicit");
  if (Is(what, "Private")) known = Is(TakeWord(line), "Module");
  if (Is(what, "Base")) {
    const std::string_view base = TakeWord(line);
    known = base == "0" || base == "1";
  }
  if (Is(what, "Compare")) {
    const std::string_view how = TakeWord(line);
    known = Is(how, "Database") || Is(how, "Text") || Is(how, "Binary");
  }
  return known && (line.empty() || line.front() == '\'');
}

bool IsModuleAttribute(std::string_view line) noexcept {
  return Is(TakeWord(line), "Attribute") && text::StartsWithIgnoreCase(line, "VB_");
}

bool IsClassHeader(std::string_view line) noexcept {
  if (!Is(TakeWord(line), "VERSION") || !line.starts_with("1.")) return false;
  return Is(Trimmed(line.substr(std::min(line.find_first_of(" \t"), line.size()))), "CLASS");
}

/// What the first block is, after the properties of the whole file.
TextExport KindOfFirstBlock(text::LineReader& lines) noexcept {
  for (std::string_view line; lines.Next(line);) {
    line = Trimmed(line);
    const std::string_view word = TakeWord(line);
    if (Is(word, "Begin")) {
      if (Is(line, "Form")) return TextExport::kForm;
      if (Is(line, "Report")) return TextExport::kReport;
      return line.empty() ? TextExport::kMacro : TextExport::kNone;
    }
    if (!word.empty() && !line.starts_with('=')) return TextExport::kNone;
  }
  return TextExport::kNone;
}

TextExport KindOfText(std::string_view code) noexcept {
  text::LineReader lines(code);
  for (std::string_view line; lines.Next(line);) {
    line = Trimmed(line);
    if (line.empty()) continue;
    if (IsNumberProperty(line, "Version")) return KindOfFirstBlock(lines);
    if (IsNumberProperty(line, "Operation") || line.starts_with("dbMemo \"SQL\"")) return TextExport::kQuery;
    if (IsOptionLine(line) || IsModuleAttribute(line) || IsClassHeader(line)) return TextExport::kModule;
    if (line.front() != '\'') return TextExport::kNone;
  }
  return TextExport::kNone;
}

/// Of a Windows-1252 text; "." for the module in front.
bool IsNameByte(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.' ||
         static_cast<unsigned char>(c) >= 0xC0;
}

}  // namespace

TextExport TextExportOf(std::string_view head) {
  if (files::IsSingleByteText(head)) return KindOfText(head);
  return KindOfText(files::DecodeSourceText(head));
}

std::string_view ModuleNamePrefix(TextExport found) noexcept {
  if (found == TextExport::kForm) return "Form_";
  return found == TextExport::kReport ? "Report_" : "";
}

std::vector<std::string> NamesCalledIn(std::string_view bytes) {
  constexpr std::size_t kMost = 1000;
  const std::string code = files::DecodeSourceText(bytes);
  std::vector<std::string> names;
  std::unordered_set<std::string_view> known;
  for (std::size_t at = code.find('('); at != std::string::npos; at = code.find('(', at + 1)) {
    std::size_t start = at;
    while (start > 0 && IsNameByte(code[start - 1])) --start;
    const std::string_view name = std::string_view(code).substr(start, at - start);
    if (name.empty() || name.front() == '.' || !known.insert(name).second) continue;
    names.push_back(text::Utf8FromCode(name));
    if (names.size() == kMost) break;
  }
  return names;
}

}  // namespace quillmate::office
