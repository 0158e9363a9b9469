#include <algorithm>

#include "parser_p.h"
#include "word_classes_p.h"

/// Statements that steer: If, For, Select, With, GoTo and their kin.
namespace quillmate::language {

// ---------------------------------------------------------------------------------------------------- conditions

/// Up to Then, which is taken; a missing one ends it where a statement's words begin.
void Parser::ParseCondition() {
  while (!AtEnd() && !AtWord(kWordThen) && !AtWord(kWordGoTo)) {
    const std::uint32_t before = at_;
    Run(Mode::kExpression);
    if (at_ == before) ++at_;
  }
  TakeWord(kWordThen);
}

void Parser::ParseIf() {
  const std::uint32_t first = at_ - 1;
  ParseCondition();
  Complexity(1);
  if (tokens_[at_].kind == TokenKind::kEnd) {
    Complete(StatementKind::kIf, first, true);
    OpenBlock(BlockStack::Kind::kIf, kNone, false);
    return;
  }
  Complete(StatementKind::kInlineIf, first, true);
  inlineIfs_.push_back(false);
  continues_ = true;
  Nesting(Depth());
  ParseThenLabel();
}

/// A number after Then or Else is where to go.
void Parser::ParseThenLabel() {
  if (tokens_[at_].kind != TokenKind::kInteger) return;
  const std::uint32_t first = at_;
  EmitLabel();
  Complete(StatementKind::kGoTo, first, true);
}

void Parser::ParseElseIf() {
  const std::uint32_t first = at_ - 1;
  ParseCondition();
  Complexity(1);
  Complete(StatementKind::kElseIf, first, true);
  continues_ = true;
  ParseThenLabel();
}

/// Else pairs with the innermost If of its line that has none yet; else it belongs to a block.
void Parser::ParseElse() {
  const std::uint32_t first = at_++;
  while (!inlineIfs_.empty() && inlineIfs_.back()) inlineIfs_.pop_back();
  if (!inlineIfs_.empty()) inlineIfs_.back() = true;
  Complete(StatementKind::kElse, first, false);
  continues_ = true;
  ParseThenLabel();
}

void Parser::ParseSelect() {
  const std::uint32_t first = at_ - 1;
  TakeWord(kWordCase);
  Run(Mode::kExpression);
  Complete(StatementKind::kSelect, first, true);
  OpenBlock(BlockStack::Kind::kSelect, kNone, false);
}

void Parser::ParseCase() {
  const std::uint32_t first = at_ - 1;
  if (TakeWord(kWordElse)) {
    Complete(StatementKind::kCaseElse, first, false);
    return;
  }
  Complexity(1);
  SkipToEnd();
  Complete(StatementKind::kCase, first, false);
}

// --------------------------------------------------------------------------------------------------------- loops

void Parser::ParseFor() {
  const std::uint32_t first = at_ - 1;
  const bool each = TakeWord(kWordEach);
  Run(Mode::kOperand);
  if (Whole().last != kNone) Use(Whole().last).role = each ? Role::kForEachVariable : Role::kForVariable;
  if (each) {
    TakeWord(kWordIn);
    Run(Mode::kExpression);
    if (Whole().last != kNone) Use(Whole().last).flags |= use_flag::kForEachSource;
  } else {
    TakeOperator(Operator::kEqual);
    Run(Mode::kExpression);
    if (TakeWord(kWordTo)) Run(Mode::kExpression);
    if (TakeWord(kWordStep)) Run(Mode::kExpression);
  }
  SkipToEnd();
  Complexity(1);
  Complete(each ? StatementKind::kForEach : StatementKind::kFor, first, true);
  OpenBlock(BlockStack::Kind::kFor, kNone, false);
}

/// Closes as many loops as it has names, one at least.
void Parser::ParseNext() {
  const std::uint32_t first = at_ - 1;
  CloseBlock(BlockStack::Kind::kFor);
  for (bool more = false; !AtEnd(); more = true) {
    const std::uint32_t before = at_;
    if (more) CloseBlock(BlockStack::Kind::kFor);
    ParseTarget(Role::kNextVariable);
    if (!TakeOperator(Operator::kComma) && at_ == before) ++at_;
  }
  Complete(StatementKind::kNext, first, false);
}

void Parser::ParseDo(bool loop) {
  const std::uint32_t first = at_ - 1;
  const bool condition = TakeWord(kWordWhile) || TakeWord(kWordUntil);
  if (condition) Run(Mode::kExpression);
  if (condition && !(loop && blocks_.Counted(BlockStack::Kind::kDo))) Complexity(1);
  if (loop) CloseBlock(BlockStack::Kind::kDo);
  Complete(loop ? StatementKind::kLoop : StatementKind::kDo, first, !loop);
  if (!loop) OpenBlock(BlockStack::Kind::kDo, kNone, condition);
}

void Parser::ParseWhile() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kExpression);
  Complexity(1);
  Complete(StatementKind::kWhile, first, true);
  OpenBlock(BlockStack::Kind::kWhile, kNone, false);
}

void Parser::ParseWith() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kExpression);
  const Outcome object = Whole();
  if (object.last != kNone) Use(object.last).flags |= use_flag::kWithObject;
  SkipToEnd();
  Complete(StatementKind::kWith, first, true);
  OpenBlock(BlockStack::Kind::kWith, object.last, false);
}

// ----------------------------------------------------------------------------------------------------------- ends

void Parser::ParseEnd() {
  const std::uint32_t first = at_ - 1;
  const Token& word = tokens_[at_];
  const NameId name = word.kind == TokenKind::kName && (word.flags & token_flag::kBracketed) == 0 ? word.name : kNone;
  switch (name) {
    case kWordIf:
      ++at_;
      CloseBlock(BlockStack::Kind::kIf);
      return Complete(StatementKind::kEndIf, first, false);
    case kWordSelect:
      ++at_;
      CloseBlock(BlockStack::Kind::kSelect);
      return Complete(StatementKind::kEndSelect, first, false);
    case kWordWith:
      ++at_;
      CloseBlock(BlockStack::Kind::kWith);
      return Complete(StatementKind::kEndWith, first, false);
    case kWordSub:
    case kWordFunction:
    case kWordProperty:
      ++at_;
      Complete(StatementKind::kRoutineEnd, first, false);
      return EndRoutine(name);
    case kWordType:
    case kWordEnum:
      ++at_;
      if (block_ != kNone) CloseBlockDeclaration(word.line);
      return Complete(StatementKind::kBlockMember, first, false);
    default:
      if (name != kNone && !AtEnd()) {
        // "End Class" and the like belong to other languages.
        ++at_;
        Note(word.line, ProblemKind::kUnreadable);
        return Complete(StatementKind::kOther, first, false);
      }
      return Complete(StatementKind::kEnd, first, true);
  }
}

// ---------------------------------------------------------------------------------------------------------- jumps

/// "&H10" is no label.
bool Parser::IsLineNumber(const Token& token) const noexcept {
  return token.kind == TokenKind::kInteger && text_[token.offset] != '&';
}

/// The name that a numeric label has in every spelling: without leading zeros.
NameId Parser::NumberName(const Token& token) {
  std::string_view digits = text_.substr(token.offset, token.length);
  const std::size_t end = digits.find_first_not_of("0123456789");
  if (end != std::string_view::npos) digits = digits.substr(0, end);
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.empty() ? 0 : digits.size() - 1));
  return digits.empty() ? token.name : names_->Copied(digits);
}

/// A label that is jumped to; false when there is none.
bool Parser::EmitLabel() {
  const Token& token = tokens_[at_];
  if (token.kind != TokenKind::kName && !IsLineNumber(token)) return false;
  const Index use = Emit(token, Role::kLabel);
  if (token.kind == TokenKind::kInteger) {
    const NameId name = NumberName(token);
    Use(use).name = name;
    Use(use).flags |= use_flag::kNumber;
  }
  ++at_;
  return true;
}

void Parser::ParseGoTo(StatementKind kind) {
  const std::uint32_t first = at_ - 1;
  EmitLabel();
  SkipToEnd();
  Complete(kind, first, true);
}

/// `On x GoTo a, b`, `On x GoSub a, b`.
void Parser::ParseOn() {
  const std::uint32_t first = at_ - 1;
  const std::uint32_t error = AtWord(kWordLocal) ? at_ + 1 : at_;
  if (IsWord(error, kWordError)) {
    at_ = error + 1;
    ParseOnError();
    return Complete(StatementKind::kOnError, first, true);
  }
  Run(Mode::kExpression);
  if (TakeWord(kWordGoTo) || TakeWord(kWordGoSub) || (TakeWord(kWordGo) && (TakeWord(kWordTo) || TakeWord(kWordSub)))) {
    std::uint32_t targets = 0;
    while (EmitLabel()) {
      ++targets;
      if (!TakeOperator(Operator::kComma)) break;
    }
    Complexity(targets);
  }
  SkipToEnd();
  Complete(StatementKind::kOnGoTo, first, true);
}

/// After On Error; 0 and -1 are no labels.
void Parser::ParseOnError() {
  if (TakeWord(kWordResume)) {
    TakeWord(kWordNext);
  } else if (TakeWord(kWordGoTo) || (TakeWord(kWordGo) && TakeWord(kWordTo))) {
    if (TakeOperator(Operator::kMinus) || IsZero(tokens_[at_])) {
      if (!AtEnd()) ++at_;
    } else {
      EmitLabel();
    }
  }
  SkipToEnd();
}

bool Parser::IsZero(const Token& token) const {
  return token.kind == TokenKind::kInteger && text_.substr(token.offset, token.length) == "0";
}

void Parser::ParseResume() {
  const std::uint32_t first = at_ - 1;
  if (!TakeWord(kWordNext) && !AtEnd()) {
    if (IsZero(tokens_[at_])) {
      ++at_;
    } else {
      EmitLabel();
    }
  }
  SkipToEnd();
  Complete(StatementKind::kResume, first, true);
}

}  // namespace quillmate::language
