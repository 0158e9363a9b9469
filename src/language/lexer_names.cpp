#include <algorithm>

#include <quillmate/text/utf8.h>

#include "case_folding_p.h"
#include "characters_p.h"
#include "lexer_p.h"

/// Names: plain ones, those beyond ASCII, those in brackets, and the suffixes after them.
namespace quillmate::language {
namespace {

constexpr std::size_t kNestedBrackets = 256;  // how far to look for the outer end of brackets in brackets

/// Reserved words that a file number or a date may follow without a blank: `Close#1`.
constexpr bool TakesHash(NameId word) noexcept {
  return word < kWordAccess && word != kWordDate && word != kWordString && word != kWordTab;
}

BuiltinType SuffixType(char c) noexcept {
  switch (c) {
    case '%':
      return BuiltinType::kInteger;
    case '&':
      return BuiltinType::kLong;
    case '^':
      return BuiltinType::kLongLong;
    case '!':
      return BuiltinType::kSingle;
    case '#':
      return BuiltinType::kDouble;
    case '@':
      return BuiltinType::kCurrency;
    case '$':
      return BuiltinType::kString;
    default:
      return BuiltinType::kUndeclared;
  }
}

text::Utf8Character CharacterAt(const char* at, const char* end) noexcept {
  const text::Utf8Character read =
      text::ReadUtf8({at, static_cast<std::size_t>(std::min<std::ptrdiff_t>(end - at, 4))});
  return read.length == 0 ? text::Utf8Character{U'\uFFFD', 1} : read;
}

}  // namespace

void Lexer::ReadName() {
  const char* const from = at_;
  const char* to = from + 1;
  auto bits = static_cast<unsigned char>(*from);
  for (; GoesOnWithName(*to); ++to) bits |= static_cast<unsigned char>(*to);
  if (bits < 0x80) {
    const NameId name = names_->Plain(from, static_cast<std::size_t>(to - from));
    if (name == kWordRem && AtStatementStart()) return ReadComment(from);
    Token& token = Push(TokenKind::kName, from, to);
    token.name = name;
    return ReadNameSuffix(token);
  }
  ReadHighCharacter();
}

/// A name with characters beyond ASCII, or one of those that belong to none.
void Lexer::ReadHighCharacter() {
  const char* const from = at_;
  const char* to = from;
  std::ptrdiff_t extraBytes = 0;
  while (to < end_ && GoesOnWithName(*to)) {
    if (static_cast<unsigned char>(*to) < 0x80) {
      ++to;
      continue;
    }
    const text::Utf8Character read = CharacterAt(to, end_);
    const bool blank = IsBlank(read.character);
    if (blank || IsPunctuation(read.character)) {
      if (to > from) break;
      if (blank) {
        pending_ |= token_flag::kBlankBefore;
        at_ = to + read.length;
      } else {
        Push(TokenKind::kUnknown, to, to + read.length);
      }
      columnBase_ += read.length - 1;
      return;
    }
    to += read.length;
    extraBytes += static_cast<std::ptrdiff_t>(read.length) - 1;
  }
  Token& token = Push(TokenKind::kName, from, to);
  columnBase_ += extraBytes;
  token.name = names_->Other({from, static_cast<std::size_t>(to - from)});
  ReadNameSuffix(token);
}

/// The "]" that ends the name at `at_`, null when the line has none.
const char* Lexer::FindBracketEnd() noexcept {
  if (at_ < noBracketBefore_) return nullptr;
  const char* first = nullptr;
  int depth = 0;
  const char* c = at_;
  for (; c < end_ && !IsLineEnd(*c); ++c) {
    if (*c == '[') ++depth;
    if (*c != ']') continue;
    if (first == nullptr) first = c;
    if (--depth == 0) return c;
    if (c - at_ > static_cast<std::ptrdiff_t>(kNestedBrackets)) return first;
  }
  if (first == nullptr) noBracketBefore_ = c;
  return first;
}

void Lexer::ReadBracketedName() {
  const char* const from = at_;
  const char* const close = FindBracketEnd();
  if (close == nullptr) {
    Push(TokenKind::kUnknown, from, from + 1).flags |= token_flag::kUnclosed;
    return;
  }
  Token& token = Push(TokenKind::kName, from, close + 1);
  token.flags |= token_flag::kBracketed;
  bool plain = close > from + 1;
  for (const char* c = from + 1; c < close; ++c) {
    plain = plain && GoesOnWithName(*c) && static_cast<unsigned char>(*c) < 0x80;
    if ((static_cast<unsigned char>(*c) & 0xC0) == 0x80) ++columnBase_;
  }
  const auto length = static_cast<std::size_t>(close - from - 1);
  token.name = plain ? names_->Plain(from + 1, length) : names_->Other({from + 1, length});
  ReadNameSuffix(token);
}

void Lexer::TakeSuffix(Token& token) {
  token.detail = static_cast<std::uint8_t>(SuffixType(*at_));
  token.flags |= token_flag::kSuffixed;
  ++token.length;
  ++at_;
}

void Lexer::ReadNameSuffix(Token& token) {
  const bool reserved = token.name < kWordAccess && (token.flags & token_flag::kBracketed) == 0;
  switch (*at_) {
    case '%':
    case '@':
    case '$':
      return TakeSuffix(token);
    case '&':
      if (!StartsOperand('&', at_[1]) && !reserved) TakeSuffix(token);
      return;
    case '^':
      if (!StartsOperand('^', at_[1]) && !reserved) TakeSuffix(token);
      return;
    case '!': {
      const CharacterClass next = ClassOf(at_[1]);
      const bool access = next == CharacterClass::kLetter || next == CharacterClass::kHigh ||
                          next == CharacterClass::kBracket || next == CharacterClass::kUnderscore;
      if (!access && !reserved) TakeSuffix(token);
      return;
    }
    case '#':
      if (!TakesHash(token.name) || (token.flags & token_flag::kBracketed) != 0) TakeSuffix(token);
      return;
    default:
      return;
  }
}

}  // namespace quillmate::language
