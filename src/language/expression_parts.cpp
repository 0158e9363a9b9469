#include "parser_p.h"
#include "word_classes_p.h"

/// Rarer parts of expressions, and what only the tokens further on can tell: how far an operand goes.
namespace quillmate::language {

/// At the start of a statement, after a name: True when "(" begins the first argument of a call without parentheses,
/// `f (a), b`, and no list of its own.
bool Parser::IsStatementArgument(std::uint32_t open) const {
  const NameId close = tokens_[open].name;
  if (close == kNone) return false;
  const Token& next = tokens_[close + 1];
  switch (next.kind) {
    case TokenKind::kEnd:
      break;
    case TokenKind::kName: {
      const WordClass word = ClassOfName(next);
      if (word == WordClass::kOperator || word == WordClass::kIs) return true;
      if (word != WordClass::kThen) return false;
      break;
    }
    case TokenKind::kOperator:
      switch (static_cast<Operator>(next.detail)) {
        case Operator::kColon:
          break;
        case Operator::kDot:
        case Operator::kBang:
        case Operator::kOpen:
          return StandsApart(tokens_[open]) && IsOperandOfArgument(close + 1);
        case Operator::kEqual:
        case Operator::kFileNumber:
        case Operator::kAssignArgument:
          return false;
        default:
          return true;
      }
      break;
    default:
      return false;
  }
  // `f (a)`: one argument; `f ()` and `f (a, b)`, which only an array or a careless author writes: a list.
  if (close == open + 1) return false;
  if (IsOperator(open + 2, Operator::kAssignArgument)) return false;
  for (std::uint32_t i = open + 1; i < close; ++i) {
    if (IsOperator(i, Operator::kComma)) return false;
    if (IsOperator(i, Operator::kOpen) && tokens_[i].name != kNone) i = tokens_[i].name;
  }
  return true;
}

/// `f (a).b, c`: true when the operand that goes on at `from` has arguments or operators after it.
bool Parser::IsOperandOfArgument(std::uint32_t from) const {
  constexpr std::uint32_t kFurthest = 64;
  for (const std::uint32_t limit = from + kFurthest; from < limit;) {
    if (IsOperator(from, Operator::kDot) || IsOperator(from, Operator::kBang)) {
      from += tokens_[from + 1].kind == TokenKind::kName ? 2 : 1;
    } else if (IsOperator(from, Operator::kOpen) && tokens_[from].name != kNone) {
      from = tokens_[from].name + 1;
    } else {
      break;
    }
  }
  const Token& next = tokens_[from];
  if (next.kind == TokenKind::kName) return ClassOfName(next) == WordClass::kOperator;
  return next.kind == TokenKind::kOperator && !IsOperator(from, Operator::kEqual) &&
         !IsOperator(from, Operator::kColon);
}

/// True when nothing of the same operand follows the list at `open`.
bool Parser::IsLastList(std::uint32_t open) const {
  const NameId close = tokens_[open].name;
  if (close == kNone) return true;
  return !IsOperator(close + 1, Operator::kDot) && !IsOperator(close + 1, Operator::kBang) &&
         !IsOperator(close + 1, Operator::kOpen);
}

/// `name := value`.
void Parser::StepNamedArgument(const Token& token) {
  const Index callee = frames_.back().callee;
  const Index named = Emit(token, Role::kNamedArgument);
  Use(named).owner = callee;
  at_ += 2;
  StartArgument(frames_.back());
  frames_.back().named = named;
}

void Parser::StepNew() {
  const std::uint32_t first = at_++;
  const Index last = EmitQualified(Role::kNew, use_flag::kCreates, kNone);
  Frame& frame = frames_.back();
  frame.chainFirst = first;
  frame.chainLast = last;
  frame.chainEnd = at_;
  frame.listDone = false;
  frame.indirect = true;
}

void Parser::StepAddressOf() {
  const std::uint32_t first = at_++;
  const Index last = EmitQualified(Role::kAddressOf, 0, kNone);
  Frame& frame = frames_.back();
  frame.chainFirst = first;
  frame.chainLast = last;
  frame.chainEnd = at_;
  frame.listDone = frame.indirect = true;
}

void Parser::StepIs() {
  ++at_;
  Frame& frame = frames_.back();
  if (!frame.typeOf) return;
  frame.typeOf = false;
  if (AtName() && ClassOfName(tokens_[at_]) == WordClass::kName) EmitQualified(Role::kTypeOf, 0, kNone);
}

/// "B" or "BF" after the colour of Line, "Step" before a point.
bool Parser::IsGraphicsMark() const {
  if (AtWord(kWordStep)) return IsOperator(at_ + 1, Operator::kOpen);
  const bool mark = drawing_ == Drawing::kLine && (AtWord(kWordB) || AtWord(kWordBF));
  if (!mark || at_ == 0 || !IsOperator(at_ - 1, Operator::kComma)) return false;
  const Token& next = tokens_[at_ + 1];
  return next.kind == TokenKind::kEnd || IsOperator(at_ + 1, Operator::kColon) || IsWord(at_ + 1, kWordElse);
}

}  // namespace quillmate::language
