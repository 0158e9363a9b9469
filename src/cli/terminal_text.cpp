#include "terminal_text.h"

#include <algorithm>

#include <quillmate/text/utf8.h>

namespace quillmate::cli {
namespace {

constexpr std::size_t kLongestCharacter = 4;

bool IsControl(char32_t c) noexcept { return (c < 0x20 && c != '\t' && c != '\n') || (c >= 0x7F && c <= 0x9F); }

/// Marks, embeddings, overrides and isolates.
bool TurnsDirection(char32_t c) noexcept {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

void AppendEscape(std::string& out, std::string_view prefix, unsigned code, int digits) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += prefix;
  while (digits-- > 0) out += kDigits[(code >> (4U * static_cast<unsigned>(digits))) & 0xFU];
}

/// The first bytes of a character whose others have not come yet.
bool MayGoOn(std::string_view bytes) noexcept {
  return bytes.size() < kLongestCharacter && static_cast<unsigned char>(bytes[0]) >= 0xC2 &&
         std::all_of(bytes.begin() + 1, bytes.end(), [](char c) { return (c & 0xC0) == 0x80; });
}

}  // namespace

std::size_t AppendForTerminal(std::string& out, std::string_view utf8, bool last) {
  std::string_view rest = utf8;
  while (!rest.empty()) {
    if (rest[0] == '\r' && (rest.size() == 1 ? !last : rest[1] == '\n')) {
      if (rest.size() == 1) break;
      out += "\r\n";
      rest.remove_prefix(2);
      continue;
    }
    const text::Utf8Character read = text::ReadUtf8(rest);
    if (read.length == 0 && !last && MayGoOn(rest)) break;
    if (read.length == 0) {
      AppendEscape(out, "\\x", static_cast<unsigned char>(rest[0]), 2);
    } else if (IsControl(read.character) || TurnsDirection(read.character)) {
      AppendEscape(out, "\\u", read.character, 4);
    } else {
      out += rest.substr(0, read.length);
    }
    rest.remove_prefix(std::max<std::size_t>(read.length, 1));
  }
  return utf8.size() - rest.size();
}

std::string ForTerminal(std::string_view utf8) {
  std::string out;
  AppendForTerminal(out, utf8, true);
  return out;
}

}  // namespace quillmate::cli
