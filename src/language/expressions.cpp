#include <algorithm>
#include <limits>

#include "parser_p.h"
#include "word_classes_p.h"

namespace quillmate::language {
namespace {

template <class Narrow>
Narrow Clamp(std::uint32_t value) noexcept {
  return static_cast<Narrow>(std::min<std::uint32_t>(value, std::numeric_limits<Narrow>::max()));
}

}  // namespace

Index Parser::Emit(const Token& token, Role role, Access access, Index previous) {
  const auto index = static_cast<Index>(module_->uses.size());
  NameUse& use = module_->uses.emplace_back();
  use.offset = token.offset;
  use.line = token.line;
  use.column = token.column;
  use.name = token.name;
  use.previous = previous;
  use.owner = kNone;
  use.routine = routine_;
  use.length = Clamp<std::uint16_t>(token.length);
  use.role = role;
  use.access = access;
  use.flags = context_;
  if ((token.flags & token_flag::kBracketed) != 0) use.flags |= use_flag::kBracketed;
  if ((token.flags & token_flag::kSuffixed) != 0) use.flags |= use_flag::kSuffixed;
  return index;
}

Index Parser::EmitQualified(Role role, std::uint32_t lastFlags, Index owner) {
  Index last = kNone;
  while (AtName()) {
    const Access access = last == kNone ? Access::kSimple : Access::kMember;
    if (last != kNone) Use(last).flags |= use_flag::kQualifier;
    last = Emit(tokens_[at_++], role, access, last);
    Use(last).owner = owner;
    if (!AtOperator(Operator::kDot) || tokens_[at_ + 1].kind != TokenKind::kName) break;
    ++at_;
  }
  if (last != kNone) Use(last).flags |= lastFlags;
  return last;
}

void Parser::EmitString(const Token& token) {
  if (token.length <= 2) return;
  const Frame& frame = frames_.back();
  StringUse& use = module_->strings.emplace_back();
  use.offset = token.offset;
  use.line = token.line;
  use.column = token.column;
  use.length = token.length;
  use.routine = routine_;
  use.inactive = activity_ != Activity::kActive;
  use.whole = false;
  use.assigned = false;
  use.owner = frame.named != kNone ? frame.named : frame.callee;
  use.position = use.owner == kNone || frame.named != kNone ? 0 : frame.position;
  if (use.owner == kNone && assigned_ != kNone) {
    use.owner = assigned_;
    use.assigned = true;
  }
}

/// Reads one expression or list; `frames_` keeps its outermost frame.
void Parser::Run(Mode mode, Index callee) {
  mode_ = mode;
  frames_.clear();
  Frame& outermost = frames_.emplace_back();
  outermost.callee = callee;
  outermost.argumentFirst = at_;
  outermost.listDone = false;
  while (Step(tokens_[at_])) {
  }
  // Parentheses that were never closed end here.
  while (!Outermost()) {
    FinishArgument();
    frames_.pop_back();
  }
  if (callee != kNone) FinishArgument();
}

bool Parser::Step(const Token& token) {
  if (SingleOutermost() && OperandBefore() && EndsTarget(token)) return false;
  switch (token.kind) {
    case TokenKind::kName:
      return StepName(token);
    case TokenKind::kString:
    case TokenKind::kInteger:
    case TokenKind::kFloat:
    case TokenKind::kDate:
      if (SingleOutermost()) return false;
      StepLiteral(token);
      return true;
    case TokenKind::kOperator:
      return StepOperator(token);
    case TokenKind::kEnd:
      return false;
    default:
      if (SingleOutermost()) return false;
      ++at_;
      return true;
  }
}

/// True when the single operand that is read does not go on with `token`.
bool Parser::EndsTarget(const Token& token) const {
  if (token.kind != TokenKind::kOperator) return true;
  switch (static_cast<Operator>(token.detail)) {
    case Operator::kDot:
      return mode_ == Mode::kTarget && StandsApart(token);
    case Operator::kBang:
      return StandsApart(token);
    case Operator::kOpen:
      return (mode_ == Mode::kTarget && IsStatementArgument(at_)) || (mode_ == Mode::kBounded && IsLastList(at_));
    default:
      return true;
  }
}

void Parser::StartArgument(Frame& frame) {
  frame.argumentFirst = at_;
  frame.chainEnd = 0;
  frame.chainLast = kNone;
  frame.named = kNone;
  frame.byVal = false;
  frame.typeOf = false;
}

void Parser::StepLiteral(const Token& token) {
  if (token.kind == TokenKind::kString) EmitString(token);
  Frame& frame = frames_.back();
  frame.chainFirst = at_;
  frame.chainLast = kNone;
  frame.listDone = false;
  frame.chainEnd = ++at_;
}

/// `LongPtr.[_First]`, of an enum that is called like a type; `Event.Source`, in a near dialect.
bool Parser::IsWordBeforeMember(const Token& token) const {
  return ClassOfName(token) == WordClass::kReserved && IsOperator(at_ + 1, Operator::kDot) &&
         (tokens_[at_ + 1].flags & token_flag::kBlankBefore) == 0;
}

bool Parser::StepName(const Token& token) {
  if (IsOperator(at_ + 1, Operator::kAssignArgument)) {
    StepNamedArgument(token);
    return true;
  }
  if (ClassOfName(token) != WordClass::kName && !IsWordBeforeMember(token)) return StepWord(token);
  if (Outermost() && OperandBefore() && mode_ != Mode::kOutputList) return false;
  if (drawing_ != Drawing::kNothing && Outermost() && IsGraphicsMark()) {
    ++at_;
    return true;
  }
  Frame& frame = frames_.back();
  frame.chainFirst = at_;
  frame.chainLast = Emit(token, Role::kValue);
  frame.listDone = frame.indirect = false;
  frame.chainEnd = ++at_;
  return true;
}

/// A reserved word.
bool Parser::StepWord(const Token& token) {
  switch (ClassOfName(token)) {
    case WordClass::kOperator:
      ++at_;
      return true;
    case WordClass::kLiteral:
      StepLiteral(token);
      return true;
    case WordClass::kNew:
      StepNew();
      return true;
    case WordClass::kTypeOf:
      frames_.back().typeOf = true;
      ++at_;
      return true;
    case WordClass::kIs:
      StepIs();
      return true;
    case WordClass::kAddressOf:
      StepAddressOf();
      return true;
    case WordClass::kPassing: {
      Frame& frame = frames_.back();
      if (frame.argumentFirst == at_) {
        frame.byVal = token.name == kWordByVal;
        frame.argumentFirst = at_ + 1;
      }
      ++at_;
      return true;
    }
    case WordClass::kThen:
      return false;
    default:
      if (Outermost()) return false;
      ++at_;
      return true;
  }
}

bool Parser::StepOperator(const Token& token) {
  switch (static_cast<Operator>(token.detail)) {
    case Operator::kDot:
    case Operator::kBang:
      return StepAccess(token);
    case Operator::kOpen:
      return StepOpen();
    case Operator::kClose:
      return StepClose();
    case Operator::kColon:
      return StepColon();
    case Operator::kComma:
      return StepComma();
    case Operator::kSemicolon:
      if (SingleOutermost()) return false;
      ++at_;
      StartArgument(frames_.back());
      return true;
    default:
      if (SingleOutermost()) return false;
      ++at_;
      return true;
  }
}

bool Parser::StepAccess(const Token& token) {
  const bool key = token.detail == static_cast<std::uint8_t>(Operator::kBang);
  const Token& name = tokens_[at_ + 1];
  Frame& frame = frames_.back();
  const bool operand = OperandBefore();
  bool member = operand;
  if (StandsApart(token) && (key || (mode_ == Mode::kOutputList && Outermost()))) member = false;
  if (operand && !member && Outermost() && mode_ != Mode::kOutputList) return false;
  if (name.kind != TokenKind::kName) {
    ++at_;
    frame.chainEnd = 0;
    return true;
  }
  Index previous = kNone;
  if (member) {
    previous = frame.chainLast;
    if (previous != kNone) Use(previous).flags |= use_flag::kQualifier;
  } else {
    previous = blocks_.WithUse();
    frame.chainFirst = at_;
  }
  const Access access = member ? (key ? Access::kKey : Access::kMember) : (key ? Access::kWithKey : Access::kWith);
  frame.chainLast = Emit(name, key ? Role::kDictionaryKey : Role::kValue, access, previous);
  if (!member && !blocks_.HasWith()) Use(frame.chainLast).flags |= use_flag::kNoWith;
  frame.listDone = frame.indirect = false;
  at_ += 2;
  frame.chainEnd = at_;
  return true;
}

bool Parser::StepOpen() {
  Frame inner;
  Frame& frame = frames_.back();
  const bool operand =
      OperandBefore() && (tokens_[at_ - 1].kind == TokenKind::kName || IsOperator(at_ - 1, Operator::kClose));
  if (operand) {
    inner.kind = Frame::Kind::kArguments;
    inner.callee = frame.chainLast;
    inner.ofResult = frame.listDone;
    if (frame.chainLast != kNone) {
      Use(frame.chainLast).flags |= frame.listDone ? use_flag::kMoreArguments : use_flag::kParenthesised;
    }
  } else {
    if (SingleOutermost()) return false;
    inner.kind = Frame::Kind::kGroup;
  }
  inner.open = at_++;
  inner.argumentFirst = at_;
  frames_.push_back(inner);
  return true;
}

bool Parser::StepClose() {
  if (Outermost()) {
    if (mode_ >= Mode::kOperand || mode_ == Mode::kToComma) return false;
    ++at_;
    return true;
  }
  const Outcome group = Whole();
  FinishArgument();
  const Frame inner = frames_.back();
  frames_.pop_back();
  Frame& frame = frames_.back();
  ++at_;
  if (inner.kind == Frame::Kind::kArguments) {
    frame.listDone = true;
  } else {
    frame.chainFirst = inner.open;
    frame.chainLast = group.last;
    frame.listDone = false;
    frame.indirect = true;
  }
  frame.chainEnd = at_;
  return true;
}

bool Parser::StepComma() {
  if (Outermost() && mode_ != Mode::kArguments && mode_ != Mode::kOutputList && mode_ != Mode::kExpression)
    return false;
  Frame& frame = frames_.back();
  FinishArgument();
  if (frame.position < std::numeric_limits<std::uint16_t>::max()) ++frame.position;
  ++at_;
  StartArgument(frame);
  return true;
}

/// Ends the statement, except between parentheses that are closed after it.
bool Parser::StepColon() {
  if (Outermost() || tokens_[frames_.back().open].name == kNone) return false;
  ++at_;
  return true;
}

Parser::Outcome Parser::Whole() const noexcept {
  const Frame& frame = frames_.back();
  Outcome outcome;
  outcome.whole = frame.chainEnd == at_ && at_ > 0 && frame.chainFirst == frame.argumentFirst;
  if (outcome.whole) outcome.last = frame.chainLast;
  outcome.direct = outcome.whole && !frame.indirect && outcome.last != kNone;
  return outcome;
}

/// The argument before `at_` is complete: ties it to what it is handed to.
void Parser::FinishArgument() {
  const Frame& frame = frames_.back();
  if (frame.kind == Frame::Kind::kGroup || frame.callee == kNone) return;
  if (mode_ == Mode::kOutputList && Outermost()) return;
  const bool empty = frame.argumentFirst == at_ && frame.position == 1 && frame.named == kNone;
  if (!frame.ofResult) Use(frame.callee).argumentCount = empty ? 0 : frame.position;
  const Index owner = frame.named != kNone ? frame.named : frame.callee;
  const std::uint16_t position = frame.named != kNone ? 0 : frame.position;
  const Outcome outcome = Whole();
  if (outcome.direct && Use(outcome.last).role != Role::kNew) {
    NameUse& use = Use(outcome.last);
    use.owner = owner;
    use.position = position;
    use.flags |= use_flag::kBareArgument;
    if (frame.byVal) use.flags |= use_flag::kByValArgument;
    if (frame.ofResult) use.flags |= use_flag::kOfResult;
    return;
  }
  const bool literal = frame.argumentFirst + 1 == at_ && tokens_[frame.argumentFirst].kind == TokenKind::kString &&
                       tokens_[frame.argumentFirst].length > 2;
  if (literal) module_->strings.back().whole = true;
}

}  // namespace quillmate::language
