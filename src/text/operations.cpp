#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

#include <quillmate/text/operations.h>

namespace quillmate::text {
namespace {

constexpr char LowerAscii(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

#ifdef _WIN32
constexpr std::string_view kSeparators = "\\/";
#else
constexpr std::string_view kSeparators = "/";
#endif

}  // namespace

bool IsAscii(std::string_view text) noexcept {
  std::uint64_t seen = 0;
  std::size_t i = 0;
  for (; i + sizeof seen <= text.size(); i += sizeof seen) {
    std::uint64_t block = 0;
    std::memcpy(&block, text.data() + i, sizeof block);
    seen |= block;
  }
  for (; i < text.size(); ++i) seen |= static_cast<unsigned char>(text[i]);
  return (seen & 0x8080808080808080U) == 0;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string out;
  out.reserve(text.size());
  std::size_t start = 0;
  while (!from.empty()) {
    const std::size_t found = text.find(from, start);
    if (found == std::string_view::npos) break;
    out.append(text, start, found - start).append(to);
    start = found + from.size();
  }
  return out.append(text.substr(start));
}

std::string NormalizeLineBreaks(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  std::size_t start = 0;
  while (start < text.size()) {
    const auto* found = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(),
                                     [](char c) { return c == '\r' || c == '\n'; });
    const auto end = static_cast<std::size_t>(found - text.begin());
    out.append(text, start, end - start);
    if (end == text.size()) break;
    out += "\r\n";
    const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    start = end + (pair ? 2 : 1);
  }
  return out;
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t found = text.find(separator); found != std::string_view::npos; found = text.find(separator, start)) {
    pieces.push_back(text.substr(start, found - start));
    start = found + separator.size();
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string out;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) out += separator;
    out += pieces[i];
  }
  return out;
}

std::string_view TextBefore(std::string_view text, std::string_view separator) noexcept {
  return text.substr(0, text.find(separator));
}

std::string_view TextAfterLast(std::string_view text, std::string_view separator) noexcept {
  const std::size_t found = text.rfind(separator);
  return found == std::string_view::npos ? text : text.substr(found + separator.size());
}

std::string_view TrimLeft(std::string_view text) noexcept {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view Trim(std::string_view text) noexcept {
  text = TrimLeft(text);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) noexcept {
  return EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

double LeadingNumber(std::string_view text) noexcept {
  text = text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars takes "inf" and "nan" too, so a digit has to come first.
  const bool number = !text.empty() && (IsDigit(text[0]) || (text[0] == '.' && text.size() > 1 && IsDigit(text[1])));
  double value = 0;
  if (number) std::from_chars(text.data(), text.data() + text.size(), value);
  return negative ? -value : value;
}

std::string EnsureBackslash(std::string_view folder) {
  std::string out(folder);
  if (!out.empty() && kSeparators.find(out.back()) == std::string_view::npos) out += kSeparators.front();
  return out;
}

}  // namespace quillmate::text
