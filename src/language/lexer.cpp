#include <algorithm>
#include <bit>

#include <quillmate/text/utf8.h>

#include "case_folding_p.h"
#include "characters_p.h"
#include "lexer_p.h"

namespace quillmate::language {
namespace {

/// Where the last lines begin: a line that continues none and has kReadAhead bytes after its start.
std::size_t FindTail(std::string_view text) noexcept {
  for (std::size_t at = text.size() < kReadAhead ? 0 : text.size() - kReadAhead; at > 0; --at) {
    if (!IsLineEnd(text[at - 1]) || (text[at - 1] == '\r' && text[at] == '\n')) continue;
    if (!EndsContinued(text.substr(0, at))) return at;
  }
  return 0;
}

}  // namespace

void Lexer::Open(std::string_view text, NamePool& names, Module& module, bool keepComments) {
  text_ = text;
  tailFrom_ = FindTail(text);
  tail_.assign(text.begin() + static_cast<std::ptrdiff_t>(tailFrom_), text.end());
  tail_.resize(tail_.size() + kReadAhead);
  names_ = &names;
  module_ = &module;
  keepComments_ = keepComments;
}

void Lexer::Seek(std::size_t offset) {
  line_ = static_cast<std::uint32_t>(module_->lines.size());
  if (offset >= tailFrom_) {
    EnterTail();
    at_ = begin_ + (offset - tailFrom_);
    return;
  }
  begin_ = text_.data();
  end_ = begin_ + tailFrom_;
  base_ = 0;
  at_ = begin_ + offset;
}

void Lexer::EnterTail() {
  begin_ = at_ = tail_.data();
  end_ = begin_ + (tail_.size() - kReadAhead);
  base_ = static_cast<std::uint32_t>(tailFrom_);
}

bool Lexer::Next() {
  count_ = 0;
  comments_.clear();
  open_.clear();
  pending_ = token_flag::kBlankBefore;
  if (at_ == end_ && begin_ == text_.data()) EnterTail();
  if (at_ == end_) return false;
  firstLine_ = line_ + 1;
  BeginPhysicalLine();
  lineOpen_ = true;
  while (lineOpen_) ReadTokens();
  Push(TokenKind::kEnd, at_, at_);
  return true;
}

void Lexer::BeginPhysicalLine() {
  ++line_;
  columnBase_ = at_;
  noBracketBefore_ = at_;
  firstOfLine_ = count_;
  PhysicalLine& line = module_->lines.emplace_back();
  line.offset = base_ + static_cast<std::uint32_t>(at_ - begin_);
}

/// Takes the line break and settles what the line was.
void Lexer::EndPhysicalLine(bool continues) {
  PhysicalLine& line = module_->lines.back();
  if (count_ > firstOfLine_ || (continues && !line.trailingComment)) {
    const bool directive = count_ > 0 && tokens_.front().kind == TokenKind::kDirective;
    line.lineClass = directive ? LineClass::kDirective : LineClass::kCode;
  } else if (line.trailingComment) {
    line.lineClass = LineClass::kComment;
    line.trailingComment = false;
  }
  line.continues = continues;
  SkipLineEnd();
  lineOpen_ = continues && at_ < end_;
  if (lineOpen_) BeginPhysicalLine();
}

void Lexer::SkipLineEnd() noexcept {
  if (at_ == end_) return;
  if (*at_++ == '\r' && at_ < end_ && *at_ == '\n') ++at_;
}

const char* Lexer::FindLineEnd(const char* from) const noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  const auto zeroBytes = [](std::uint64_t word) { return (word - kOnes) & ~word & name_word::kHighBits; };
  for (; from < end_; from += 8) {
    const std::uint64_t word = name_word::Load(from);
    const std::uint64_t found = zeroBytes(word ^ (kOnes * '\n')) | zeroBytes(word ^ (kOnes * '\r'));
    if (found == 0) continue;
    if constexpr (std::endian::native == std::endian::little) {
      from += std::countr_zero(found) / 8;
    } else {
      while (!IsLineEnd(*from)) ++from;
    }
    return std::min(from, end_);
  }
  return end_;
}

void Lexer::ReadTokens() {
  while (lineOpen_) {
    switch (ClassOf(*at_)) {
      case CharacterClass::kBlank:
        if (at_ >= end_) return EndPhysicalLine(false);
        while (ClassOf(*++at_) == CharacterClass::kBlank && at_ < end_) {
        }
        pending_ |= token_flag::kBlankBefore;
        break;
      case CharacterClass::kLineEnd:
        return EndPhysicalLine(false);
      case CharacterClass::kLetter:
        ReadName();
        break;
      case CharacterClass::kDigit:
        ReadNumber();
        break;
      case CharacterClass::kUnderscore:
        ReadUnderscore();
        break;
      case CharacterClass::kHigh:
        ReadHighCharacter();
        break;
      case CharacterClass::kQuote:
        ReadString();
        break;
      case CharacterClass::kApostrophe:
        return ReadComment(at_);
      case CharacterClass::kOperator:
        ReadOperator();
        break;
      case CharacterClass::kAmpersand:
        ReadAmpersand();
        break;
      case CharacterClass::kBang:
        PushOperator(Operator::kBang, 1);
        break;
      case CharacterClass::kHash:
        ReadHash();
        break;
      case CharacterClass::kDot:
        if (IsAsciiDigit(at_[1]) && ((pending_ & token_flag::kBlankBefore) != 0 || !EndsOperand())) {
          ReadNumber();
        } else {
          PushOperator(Operator::kDot, 1);
        }
        break;
      case CharacterClass::kBracket:
        ReadBracketedName();
        break;
      case CharacterClass::kOpen:
        ReadOpen();
        break;
      case CharacterClass::kClose:
        ReadClose();
        break;
      case CharacterClass::kOther:
        Push(TokenKind::kUnknown, at_, at_ + 1);
        break;
    }
  }
}

Token& Lexer::Push(TokenKind kind, const char* from, const char* to) {
  if (count_ == tokens_.size()) tokens_.resize(2 * count_);
  Token& token = tokens_[count_++];
  token.offset = base_ + static_cast<std::uint32_t>(from - begin_);
  token.length = static_cast<std::uint32_t>(to - from);
  token.line = line_;
  token.column = static_cast<std::uint32_t>(from - columnBase_) + 1;
  token.name = kNone;
  token.kind = kind;
  token.flags = pending_;
  token.detail = 0;
  pending_ = 0;
  at_ = to;
  return token;
}

void Lexer::PushOperator(Operator op, std::uint32_t length) {
  Push(TokenKind::kOperator, at_, at_ + length).detail = static_cast<std::uint8_t>(op);
}

/// Where Rem is a comment: the first word of a statement.
bool Lexer::AtStatementStart() const noexcept {
  if (count_ == 0) return true;
  const Token& last = tokens_[count_ - 1];
  if (last.kind == TokenKind::kInteger) return count_ == 1;
  if (last.kind == TokenKind::kOperator) return last.detail == static_cast<std::uint8_t>(Operator::kColon);
  return last.kind == TokenKind::kName && (last.name == kWordThen || last.name == kWordElse) &&
         (last.flags & token_flag::kBracketed) == 0;
}

/// True when the last token can be the end of an operand, so that an operator and not a sign of its own follows.
bool Lexer::EndsOperand() const noexcept {
  if (count_ == 0) return false;
  const Token& last = tokens_[count_ - 1];
  switch (last.kind) {
    case TokenKind::kOperator:
      return last.detail == static_cast<std::uint8_t>(Operator::kClose);
    case TokenKind::kDirective:
    case TokenKind::kUnknown:
    case TokenKind::kComment:
      return false;
    default:
      return true;
  }
}

void Lexer::ReadAmpersand() {
  const bool operand = EndsOperand();
  const bool name = operand && tokens_[count_ - 1].kind == TokenKind::kName;
  const bool reserved =
      name && tokens_[count_ - 1].name < kWordAccess && (tokens_[count_ - 1].flags & token_flag::kBracketed) == 0;
  // After a name it is an argument ("Sleep &H10"), after any other operand a concatenation with its blank missing.
  const bool argument = !operand || reserved || (name && (pending_ & token_flag::kBlankBefore) != 0);
  const char radix = static_cast<char>(at_[1] | 0x20);
  if (argument && (radix == 'h' || radix == 'o')) {
    const char* digits = at_ + 2;
    while (radix == 'h' ? IsHexDigit(*digits) : IsAsciiDigit(*digits)) ++digits;
    if (digits > at_ + 2 && !GoesOnWithName(*digits)) return ReadRadixNumber(2);
  } else if ((!operand || reserved) && IsAsciiDigit(at_[1])) {
    return ReadRadixNumber(1);
  }
  PushOperator(Operator::kConcatenate, 1);
}

void Lexer::ReadUnderscore() {
  const char* to = at_ + 1;
  while (to < end_ && IsNarrowBlank(*to)) ++to;
  if ((to == end_ || IsLineEnd(*to)) && at_ > columnBase_ && IsBlankBeforeContinuation(at_, begin_)) {
    at_ = to;
    EndPhysicalLine(true);
    pending_ |= token_flag::kBlankBefore | token_flag::kContinuedBefore;
  } else if (GoesOnWithName(at_[1])) {
    ReadName();
  } else {
    Push(TokenKind::kUnknown, at_, at_ + 1);
  }
}

void Lexer::ReadOpen() {
  open_.push_back(count_);
  PushOperator(Operator::kOpen, 1);
}

void Lexer::ReadClose() {
  if (!open_.empty()) {
    tokens_[open_.back()].name = count_;
    open_.pop_back();
  }
  PushOperator(Operator::kClose, 1);
}

void Lexer::ReadOperator() {
  const char next = at_[1];
  const auto pushPair = [&](char second, Operator pair, Operator single) {
    next == second ? PushOperator(pair, 2) : PushOperator(single, 1);
  };
  switch (*at_) {
    case '+':
      return PushOperator(Operator::kPlus, 1);
    case '-':
      return PushOperator(Operator::kMinus, 1);
    case '*':
      return PushOperator(Operator::kTimes, 1);
    case '/':
      return PushOperator(Operator::kDivide, 1);
    case '\\':
      return PushOperator(Operator::kIntegerDivide, 1);
    case '^':
      return PushOperator(Operator::kPower, 1);
    case '=':
      if (next == '<') return PushOperator(Operator::kLessEqual, 2);
      return pushPair('>', Operator::kGreaterEqual, Operator::kEqual);
    case '<':
      if (next == '>') return PushOperator(Operator::kNotEqual, 2);
      return pushPair('=', Operator::kLessEqual, Operator::kLess);
    case '>':
      if (next == '<') return PushOperator(Operator::kNotEqual, 2);
      return pushPair('=', Operator::kGreaterEqual, Operator::kGreater);
    case ',':
      return PushOperator(Operator::kComma, 1);
    case ';':
      return PushOperator(Operator::kSemicolon, 1);
    case '?':
      return PushOperator(Operator::kQuestion, 1);
    default:
      return ReadColon();
  }
}

/// ":" and ":="; blanks between the two signs can be meant only among arguments.
void Lexer::ReadColon() {
  const char* to = at_ + 1;
  if (!open_.empty()) {
    while (to < end_ && IsNarrowBlank(*to)) ++to;
  }
  if (*to == '=') {
    PushOperator(Operator::kAssignArgument, static_cast<std::uint32_t>(to + 1 - at_));
  } else {
    PushOperator(Operator::kColon, 1);
  }
}

bool IsBlankBeforeContinuation(const char* at, const char* begin) noexcept {
  if (at == begin) return false;
  if (IsNarrowBlank(at[-1])) return true;
  if (static_cast<signed char>(at[-1]) >= 0 || at - begin < 3) return false;
  const text::Utf8Character read = text::ReadUtf8({at - 3, 3});
  return read.length == 3 && IsBlank(read.character);
}

bool EndsContinued(std::string_view lines) noexcept {
  if (!lines.empty()) lines.remove_suffix(lines.ends_with("\r\n") ? 2 : 1);
  while (!lines.empty() && IsNarrowBlank(lines.back())) lines.remove_suffix(1);
  return lines.ends_with('_');
}

}  // namespace quillmate::language
