#include <algorithm>

#include "characters_p.h"
#include "lexer_p.h"

/// Numbers, strings, dates and comments.
namespace quillmate::language {
namespace {

constexpr std::size_t kLongestDate = 64;  // between two "#"

}  // namespace

void Lexer::ReadNumber() {
  const char* const from = at_;
  const char* to = from;
  TokenKind kind = TokenKind::kInteger;
  while (IsAsciiDigit(*to)) ++to;
  if (*to == '.') {
    kind = TokenKind::kFloat;
    ++to;
    while (IsAsciiDigit(*to)) ++to;
  }
  const char exponent = static_cast<char>(*to | 0x20);
  if (exponent == 'e' || exponent == 'd') {
    const char* digits = to + 1;
    if (*digits == '+' || *digits == '-') ++digits;
    if (IsAsciiDigit(*digits)) {
      kind = TokenKind::kFloat;
      for (to = digits; IsAsciiDigit(*to);) ++to;
    }
  }
  ReadNumberSuffix(Push(kind, from, to));
}

void Lexer::ReadNumberSuffix(Token& token) {
  const char c = *at_;
  switch (c) {
    case '&':
    case '^':
      if (StartsOperand(c, at_[1])) return;
      break;
    case '%':
    case '!':
    case '#':
    case '@':
      break;
    default:
      return;
  }
  TakeSuffix(token);
}

/// "&H1F", "&O17", "&17".
void Lexer::ReadRadixNumber(std::uint32_t prefix) {
  const char* const from = at_;
  const char* to = from + prefix;
  while (IsHexDigit(*to)) ++to;
  ReadNumberSuffix(Push(TokenKind::kInteger, from, to));
}

void Lexer::ReadString() {
  const char* const from = at_;
  const char* to = from + 1;
  const char* columnBase = columnBase_;
  while (to < end_) {
    const char c = *to;
    if (c == '"') {
      if (to[1] != '"') break;
      ++to;
    } else if (IsLineEnd(c)) {
      break;
    } else if ((static_cast<unsigned char>(c) & 0xC0) == 0x80) {
      ++columnBase;
    }
    ++to;
  }
  if (to < end_ && *to == '"') {
    Push(TokenKind::kString, from, to + 1);
  } else {
    // Unclosed; a continuation at the line's end is not part of it.
    const char* last = to;
    while (last > from && IsNarrowBlank(last[-1])) --last;
    if (last - from > 2 && last[-1] == '_' && IsBlankBeforeContinuation(last - 1, begin_)) to = last - 2;
    Push(TokenKind::kString, from, to).flags |= token_flag::kUnclosed;
  }
  columnBase_ = columnBase;
}

void Lexer::ReadHash() {
  if (BeginsLine()) {
    Push(TokenKind::kDirective, at_, at_ + 1);
    return;
  }
  const char* const limit = at_ + std::min<std::ptrdiff_t>(end_ - at_, static_cast<std::ptrdiff_t>(kLongestDate));
  const char* to = at_ + 1;
  while (to < limit && *to != '#' && !IsLineEnd(*to)) ++to;
  if (to < limit && *to == '#' && IsDateText({at_ + 1, static_cast<std::size_t>(to - at_ - 1)})) {
    Push(TokenKind::kDate, at_, to + 1);
    return;
  }
  PushOperator(Operator::kFileNumber, 1);
}

/// The rest of the line, and every further line that it continues on.
void Lexer::ReadComment(const char* from) {
  do {
    const char* const to = FindLineEnd(from);
    at_ = to;
    const char* last = to;
    while (last > from && IsNarrowBlank(last[-1])) --last;
    module_->lines.back().trailingComment = last > from;
    if (keepComments_ && last > from) KeepComment(from, to);
    const bool continues = last > from && last[-1] == '_' && IsBlankBeforeContinuation(last - 1, begin_);
    EndPhysicalLine(continues);
    from = at_;
  } while (lineOpen_);
}

void Lexer::KeepComment(const char* from, const char* to) {
  Token& comment = comments_.emplace_back();
  comment.offset = base_ + static_cast<std::uint32_t>(from - begin_);
  comment.length = static_cast<std::uint32_t>(to - from);
  comment.line = line_;
  comment.column = static_cast<std::uint32_t>(from - columnBase_) + 1;
  comment.name = kNone;
  comment.kind = TokenKind::kComment;
}

}  // namespace quillmate::language
