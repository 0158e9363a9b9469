#include <array>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "jet_lexer_p.h"

namespace quillmate::codedb {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
/// Longest first: the scan takes the first that fits.
constexpr std::array<std::string_view, 17> kOperators = {"<>", "<=", ">=", "=", "<", ">", "+", "-", "*",
                                                         "/",  "&",  "(",  ")", ",", ".", "!", ";"};

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool StartsWord(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool ContinuesWord(char c) noexcept { return StartsWord(c) || IsDigit(c); }

bool DigitAt(std::string_view text, std::size_t at) noexcept { return at < text.size() && IsDigit(text[at]); }

std::size_t SkipDigits(std::string_view text, std::size_t at) noexcept {
  while (DigitAt(text, at)) ++at;
  return at;
}

std::size_t SkipExponent(std::string_view text, std::size_t at) noexcept {
  if (at >= text.size() || (text[at] != 'e' && text[at] != 'E')) return at;
  const bool sign = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-');
  const std::size_t digits = at + (sign ? 2 : 1);
  return DigitAt(text, digits) ? SkipDigits(text, digits) : at;
}

/// The position after the text literal whose opening quote is at `start`; npos when it is not closed.
std::size_t SkipText(std::string_view statement, std::size_t start) noexcept {
  const char quote = statement[start];
  std::size_t at = statement.find(quote, start + 1);
  while (at != std::string_view::npos && at + 1 < statement.size() && statement[at + 1] == quote) {
    at = statement.find(quote, at + 2);
  }
  return at == std::string_view::npos ? at : at + 1;
}

/// The position after the number that begins at `start`; `start` when there is none.
std::size_t SkipNumber(std::string_view statement, std::size_t start) noexcept {
  std::size_t at = SkipDigits(statement, start);
  const bool hasDigits = at != start;
  if (at < statement.size() && statement[at] == '.' && (hasDigits || DigitAt(statement, at + 1))) {
    at = SkipDigits(statement, at + 1);
  }
  return at == start ? start : SkipExponent(statement, at);
}

[[noreturn]] void Fail(DatabaseReason reason, std::string_view at) {
  throw files::Failure(reason, {}, {text::Utf8FromCode(at.substr(0, 40))});
}

Token ScanText(std::string_view statement, std::size_t start) {
  const std::size_t end = SkipText(statement, start);
  if (end == std::string_view::npos) Fail(DatabaseReason::kOpenText, statement.substr(start));
  return {TokenKind::Text, statement.substr(start, end - start)};
}

Token ScanBracketName(std::string_view statement, std::size_t start) {
  const std::size_t end = statement.find(']', start);
  if (end == std::string_view::npos) Fail(DatabaseReason::kOpenName, statement.substr(start));
  const std::string_view source = statement.substr(start, end + 1 - start);
  if (source.size() == 2 || source.find('\0') != std::string_view::npos) Fail(DatabaseReason::kBadName, source);
  return {TokenKind::BracketName, source};
}

Token ScanWord(std::string_view statement, std::size_t start) {
  std::size_t end = start;
  while (end < statement.size() && ContinuesWord(statement[end])) ++end;
  return {TokenKind::Word, statement.substr(start, end - start)};
}

Token ScanNumber(std::string_view statement, std::size_t start) {
  const std::size_t end = SkipNumber(statement, start);
  if (end < statement.size() && ContinuesWord(statement[end]))
    Fail(DatabaseReason::kBadNumber, statement.substr(start));
  return {TokenKind::Number, statement.substr(start, end - start)};
}

Token ScanOperator(std::string_view statement, std::size_t start, bool form) {
  const std::string_view rest = statement.substr(start);
  if (form && rest.starts_with('?')) return {TokenKind::Operator, rest.substr(0, 1)};
  for (const std::string_view candidate : kOperators) {
    if (rest.starts_with(candidate)) return {TokenKind::Operator, rest.substr(0, candidate.size())};
  }
  Fail(DatabaseReason::kBadCharacter, rest);
}

Token ScanToken(std::string_view statement, std::size_t start, bool form) {
  const char first = statement[start];
  if (first == '\'' || first == '"') return ScanText(statement, start);
  if (first == '[') return ScanBracketName(statement, start);
  if (StartsWord(first)) return ScanWord(statement, start);
  if (SkipNumber(statement, start) != start) return ScanNumber(statement, start);
  return ScanOperator(statement, start, form);
}

}  // namespace

bool Token::Is(std::string_view text) const noexcept {
  return (kind == TokenKind::Word || kind == TokenKind::Operator) && text::EqualsIgnoreCase(source, text);
}

std::vector<Token> ScanJet(std::string_view statement, bool form) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while ((at = statement.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
    if (!tokens.empty() && tokens.back().Is(";")) Fail(DatabaseReason::kManyStatements, statement.substr(at));
    tokens.push_back(ScanToken(statement, at, form));
    at += tokens.back().source.size();
  }
  if (!tokens.empty() && tokens.back().Is(";")) tokens.pop_back();
  return tokens;
}

}  // namespace quillmate::codedb
