#include "parser_p.h"

/// Statements that call, that give a value, and that give an array its bounds.
namespace quillmate::language {

void Parser::ParseCallOrAssignment() {
  const std::uint32_t first = at_;
  Run(Mode::kTarget);
  const Outcome target = Whole();
  if (target.last == kNone) {
    SkipToEnd();
    if (at_ > first) Complete(StatementKind::kOther, first, true);
    return;
  }
  if (AtOperator(Operator::kEqual)) {
    ++at_;
    ParseValue(target.last, Role::kLetTarget);
    Complete(StatementKind::kAssign, first, true);
    return;
  }
  Use(target.last).role = Role::kCall;
  ParseCallArguments(target.last);
  Complete(IsWord(first, kWordError) ? StatementKind::kErrorStatement : StatementKind::kCall, first, true);
}

/// After a called name: arguments without parentheses, an output list or points.
void Parser::ParseCallArguments(Index callee) {
  if (AtEnd()) return;
  const NameId name = Use(callee).name;
  const bool member = Use(callee).access != Access::kSimple;
  if (member && name == kWordPrint) {
    Use(callee).flags |= use_flag::kOutputList;
    Run(Mode::kOutputList, callee);
    return;
  }
  const bool drawing = name == kWordLine || name == kWordCircle || name == kWordPSet || name == kWordScale;
  if (member && drawing && BeginsGraphics(at_)) {
    ParseGraphics(callee, name == kWordLine ? Drawing::kLine : Drawing::kPoints);
    return;
  }
  if ((Use(callee).flags & use_flag::kParenthesised) != 0) {
    // `x.y(1) 2`: what follows goes to the default member of the result.
    Use(callee).flags |= use_flag::kMoreArguments;
    Run(Mode::kExpression);
    return;
  }
  const auto firstUse = static_cast<Index>(module_->uses.size());
  Run(Mode::kArguments, callee);
  if (!member && (name == kWordLoad || name == kWordUnload)) MarkLoaded(callee, firstUse);
}

void Parser::MarkLoaded(Index callee, Index firstUse) {
  for (auto use = firstUse; use < module_->uses.size(); ++use) {
    if (Use(use).owner != callee || (Use(use).flags & use_flag::kBareArgument) == 0) continue;
    Use(use).role = Use(callee).name == kWordLoad ? Role::kLoad : Role::kUnload;
  }
}

void Parser::ParseCallWord() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kOperand);
  const Outcome called = Whole();
  if (called.last != kNone) {
    Use(called.last).role = Role::kCall;
    Use(called.last).flags |= use_flag::kCallWord;
  }
  SkipToEnd();
  Complete(StatementKind::kCall, first, true);
}

/// After Let, Set, LSet, RSet.
void Parser::ParseAssignment(Role role, std::uint32_t flags) {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kOperand);
  const Outcome target = Whole();
  if (TakeOperator(Operator::kEqual)) {
    if (target.last != kNone) Use(target.last).flags |= flags;
    ParseValue(target.last, role);
    if (AtEnd() && Whole().last != kNone) Use(Whole().last).flags |= flags;
  }
  SkipToEnd();
  Complete(StatementKind::kAssign, first, true);
}

/// The right side of "=".
void Parser::ParseValue(Index target, Role role) {
  if (target != kNone) Use(target).role = role;
  assigned_ = target;
  const std::uint32_t first = at_;
  Run(Mode::kExpression);
  assigned_ = kNone;
  const Outcome value = Whole();
  if (value.last != kNone && AtEnd()) {
    Use(value.last).flags |= use_flag::kWholeValue;
    if (role == Role::kSetTarget) Use(value.last).flags |= use_flag::kObjectValue;
  }
  const bool literal = first + 1 == at_ && tokens_[first].kind == TokenKind::kString && tokens_[first].length > 2;
  if (literal && target != kNone) module_->strings.back().whole = true;
}

/// The statement `Mid(target, from, length) = value`; false when it is a call or a name.
bool Parser::ParseMid() {
  const std::uint32_t first = at_;
  if (!IsOperator(at_ + 1, Operator::kOpen)) return false;
  const NameId close = tokens_[at_ + 1].name;
  if (close == kNone || !IsOperator(close + 1, Operator::kEqual)) return false;
  const auto mid = static_cast<Index>(module_->uses.size());
  Run(Mode::kOperand);
  for (Index use = mid + 1; use < module_->uses.size(); ++use) {
    if (Use(use).owner != mid || Use(use).position != 1) continue;
    Use(use).role = Role::kLetTarget;
    Use(use).flags = (Use(use).flags & ~use_flag::kBareArgument) | use_flag::kReadToo;
  }
  TakeOperator(Operator::kEqual);
  ParseValue(kNone, Role::kLetTarget);
  Complete(StatementKind::kAssign, first, true);
  return true;
}

void Parser::ParseRaiseEvent() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kOperand);
  if (Whole().last != kNone) Use(Whole().last).role = Role::kRaiseEvent;
  SkipToEnd();
  Complete(StatementKind::kRaiseEvent, first, true);
}

/// One operand that the statement writes; what is no single operand is read.
void Parser::ParseTarget(Role role) {
  Run(Mode::kToComma);
  const Outcome target = Whole();
  if (target.direct) Use(target.last).role = role;
}

void Parser::ParseReDim() {
  const std::uint32_t first = at_ - 1;
  const std::uint32_t flags = TakeWord(kWordPreserve) ? use_flag::kPreserve : 0;
  while (!AtEnd()) {
    const std::uint32_t before = at_;
    ParseReDimItem(flags);
    if (!TakeOperator(Operator::kComma) && at_ == before) ++at_;
  }
  Complete(StatementKind::kReDim, first, true);
}

/// `name(bounds) As type`, `o.name(bounds)`.
void Parser::ParseReDimItem(std::uint32_t flags) {
  const std::uint32_t first = at_;
  Run(Mode::kBounded);
  const Outcome target = Whole();
  if (target.last == kNone) return;
  Use(target.last).role = Role::kReDim;
  Use(target.last).flags |= flags;
  const bool simple = Use(target.last).access == Access::kSimple;
  Index declaration = kNone;
  if (simple) {
    declaration = Declare(tokens_[first], DeclarationKind::kReDim, Visibility::kLocal, RoutineDeclaration());
    Decl(declaration).flags |= declaration_flag::kArray | declaration_flag::kBounds;
  }
  if (AtOperator(Operator::kOpen)) Run(Mode::kToComma);
  if (AtWord(kWordAs)) {
    const TypeClause clause = ParseTypeClause(declaration, false);
    if (declaration != kNone) ApplyType(declaration, clause);
  }
}

void Parser::ParseErase() {
  const std::uint32_t first = at_ - 1;
  while (!AtEnd()) {
    const std::uint32_t before = at_;
    ParseTarget(Role::kErase);
    if (!TakeOperator(Operator::kComma) && at_ == before) ++at_;
  }
  Complete(StatementKind::kErase, first, true);
}

void Parser::ParseImplements() {
  const std::uint32_t first = at_ - 1;
  EmitQualified(Role::kImplements, 0, kNone);
  SkipToEnd();
  Complete(StatementKind::kImplements, first, false);
}

}  // namespace quillmate::language
