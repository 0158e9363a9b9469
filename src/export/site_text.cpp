#include <array>

#include <quillmate/text/windows1252.h>

#include "site_text_p.h"

namespace quillmate::output {
namespace {

constexpr std::string_view kReplacement = "\357\277\275";

/// What has to be written instead of a character; empty when it stands for itself.
std::string_view EntityOf(char c) noexcept {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return {};
  }
}

bool IsControl(char16_t character) noexcept {
  return (character < 0x20 && character != '\t') || (character >= 0x7F && character < 0xA0);
}

std::string Utf8OfByte(unsigned char code) {
  if (IsControl(text::ToUnicode(code))) return std::string(kReplacement);
  const char c = static_cast<char>(code);
  const std::string_view entity = EntityOf(c);
  return entity.empty() ? text::Utf8FromCode({&c, 1}) : std::string(entity);
}

using ByteTable = std::array<std::string, 256>;

/// The bytes that stand for themselves have no text.
ByteTable MakeByteTable() {
  ByteTable table;
  for (unsigned code = 0; code < table.size(); ++code) {
    std::string text = Utf8OfByte(static_cast<unsigned char>(code));
    if (text.size() > 1) table[code] = std::move(text);
  }
  return table;
}

const ByteTable kBytes = MakeByteTable();

}  // namespace

void AppendCode(std::string& html, std::string_view code) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < code.size(); ++i) {
    const std::string& text = kBytes[static_cast<unsigned char>(code[i])];
    if (text.empty()) continue;
    html.append(code, start, i - start).append(text);
    start = i + 1;
  }
  html.append(code, start);
}

std::string EscapeCode(std::string_view code) {
  std::string html;
  AppendCode(html, code);
  return html;
}

std::string EscapeUtf8(std::string_view text) {
  if (!text::IsValidUtf8(text)) return EscapeCode(text);
  std::string html;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool controlPair = c == '\302' && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (controlPair || IsControl(static_cast<unsigned char>(c) < 0x80 ? static_cast<char16_t>(c) : u'x')) {
      html += kReplacement;
      i += controlPair ? 1 : 0;
    } else if (const std::string_view entity = EntityOf(c); !entity.empty()) {
      html += entity;
    } else {
      html += c;
    }
  }
  return html;
}

std::string EscapeLines(std::string_view text) {
  std::string html;
  while (true) {
    const std::size_t end = text.find('\n');
    html += EscapeUtf8(text.substr(0, end));
    if (end == std::string_view::npos) return html;
    html += '\n';
    text.remove_prefix(end + 1);
  }
}

std::string GroupedNumber(std::int64_t number) {
  std::string digits = std::to_string(number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = digits.size(); at > first + 3;) {
    at -= 3;
    digits.insert(at, 1, '.');
  }
  return digits;
}

}  // namespace quillmate::output
