#include <algorithm>
#include <cstdint>

#include <quillmate/files/paths.h>
#include <quillmate/text/utf8.h>

#include "path_text_p.h"

namespace quillmate::inventory {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

int Digit(char c) noexcept {
  const std::size_t at = kDigits.find(c);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

bool IsEscape(std::string_view text) noexcept {
  return text.size() >= 3 && text[0] == '%' && Digit(text[1]) >= 0 && Digit(text[2]) >= 0;
}

void AppendEscape(std::string& to, unsigned char byte) {
  to += '%';
  to += kDigits[byte >> 4U];
  to += kDigits[byte & 0xFU];
}

/// U+0080 to U+009F steer terminals too, and U+2028 and its kin break lines or turn their direction.
bool Steers(char32_t c) noexcept {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) ||
         c == 0x2028 || c == 0x2029 || c == 0x200E || c == 0x200F;
}

std::string Bytes(const std::filesystem::path& path) {
#ifdef _WIN32
  return files::PathText(path);
#else
  return path.native();
#endif
}

}  // namespace

std::string StoredText(const std::filesystem::path& path) {
  const std::string bytes = Bytes(path);
  const auto plain = [](char c) { return c >= ' ' && c < 0x7F && c != '%'; };
  if (std::all_of(bytes.begin(), bytes.end(), plain)) return bytes;
  std::string stored;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::string_view rest = std::string_view(bytes).substr(at);
    const text::Utf8Character read = text::ReadUtf8(rest);
    const std::size_t length = std::max<std::size_t>(read.length, 1);
    if (read.length == 0 || Steers(read.character) || IsEscape(rest)) {
      for (std::size_t i = 0; i < length; ++i) AppendEscape(stored, static_cast<unsigned char>(rest[i]));
    } else {
      stored += rest.substr(0, length);
    }
    at += length;
  }
  return stored;
}

std::filesystem::path PathOfStored(std::string_view stored) {
  std::string bytes;
  for (std::size_t at = 0; at < stored.size();) {
    const std::string_view rest = stored.substr(at);
    if (IsEscape(rest)) {
      bytes += static_cast<char>(Digit(rest[1]) << 4 | Digit(rest[2]));
      at += 3;
    } else {
      bytes += rest[0];
      ++at;
    }
  }
#ifdef _WIN32
  return files::PathFromText(bytes);
#else
  return bytes;
#endif
}

std::uint64_t PathHash(std::string_view stored) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : stored) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  hash = (hash ^ (hash >> 32U)) * 0xD6E8FEB86659FD93U;
  return hash ^ (hash >> 32U);
}

}  // namespace quillmate::inventory
