#include <algorithm>

#include "parser_p.h"
#include "word_classes_p.h"

namespace quillmate::language {

bool Parser::AtEnd() const noexcept {
  const Token& token = tokens_[at_];
  if (token.kind == TokenKind::kEnd) return true;
  if (token.kind == TokenKind::kOperator) return token.detail == static_cast<std::uint8_t>(Operator::kColon);
  return token.kind == TokenKind::kName && token.name == kWordElse && !inlineIfs_.empty() && AtWord(kWordElse);
}

/// What a statement has left, names included.
void Parser::SkipToEnd() {
  while (!AtEnd()) {
    const std::uint32_t before = at_;
    Run(Mode::kExpression);
    if (at_ == before) ++at_;
  }
}

void Parser::Complete(StatementKind kind, std::uint32_t firstToken, bool counted) {
  if (counted && routine_ != kNone && activity_ == Activity::kActive) ++module_->routines[routine_].metrics.statements;
  if (!options_->keepStatements || firstToken == at_) return;
  const Token& first = tokens_[firstToken];
  const Token& last = tokens_[at_ - 1];
  Statement& statement = module_->statements.emplace_back();
  statement.offset = first.offset;
  statement.line = first.line;
  statement.length = last.offset + last.length - first.offset;
  statement.firstToken = firstToken_ == kNone ? kNone : firstToken_ + firstToken;
  statement.firstUse = statementUse_;
  statement.routine = routine_;
  statement.kind = kind;
  statement.activity = activity_;
  statement.depth = static_cast<std::uint16_t>(std::min<std::uint32_t>(Depth(), 0xFFFF));
}

std::uint32_t Parser::Depth() const noexcept { return blocks_.Depth() + static_cast<std::uint32_t>(inlineIfs_.size()); }

void Parser::Complexity(std::uint32_t points) {
  if (routine_ != kNone && activity_ == Activity::kActive) module_->routines[routine_].metrics.complexity += points;
}

void Parser::Nesting(std::uint32_t depth) {
  if (routine_ == kNone || activity_ != Activity::kActive) return;
  std::uint32_t& deepest = module_->routines[routine_].metrics.nesting;
  deepest = std::max(deepest, depth);
}

void Parser::OpenBlock(BlockStack::Kind kind, Index withUse, bool counted) {
  blocks_.Push(kind, withUse, static_cast<std::uint32_t>(inlineIfs_.size()), counted);
  Nesting(blocks_.Depth());
}

void Parser::CloseBlock(BlockStack::Kind kind) {
  if (!blocks_.Pop(kind)) Note(tokens_[at_ - 1].line, ProblemKind::kStrayBlockEnd);
}

void Parser::ParseStatements() {
  if (InRoutine() && block_ == kNone) ParseLabels();
  while (tokens_[at_].kind != TokenKind::kEnd) {
    if (TakeOperator(Operator::kColon)) continue;
    if (AtEnd()) {
      ParseElse();
      continue;
    }
    const std::uint32_t before = at_;
    continues_ = false;
    ParseStatement();
    if (!continues_) SkipToEnd();
    if (at_ == before) ++at_;
  }
  inlineIfs_.clear();
}

/// A number and a name with ":" at the start of a line of a routine.
void Parser::ParseLabels() {
  if (IsLineNumber(tokens_[at_])) {
    const Token& number = tokens_[at_];
    const Index label = Declare(number, DeclarationKind::kLabel, Visibility::kLocal, RoutineDeclaration());
    Decl(label).name = NumberName(number);
    Decl(label).flags |= declaration_flag::kNumber;
    ++at_;
    TakeOperator(Operator::kColon);
  }
  const Token& name = tokens_[at_];
  const bool label = name.kind == TokenKind::kName && name.name >= kWordAccess && name.name != kWordRandomize &&
                     (name.flags & (token_flag::kBracketed | token_flag::kSuffixed)) == 0 &&
                     IsOperator(at_ + 1, Operator::kColon);
  if (!label) return;
  Declare(name, DeclarationKind::kLabel, Visibility::kLocal, RoutineDeclaration());
  at_ += 2;
}

void Parser::ParseStatement() {
  const std::uint32_t first = at_;
  statementUse_ = static_cast<Index>(module_->uses.size());
  const Token& token = tokens_[at_];
  if (block_ != kNone && ParseBlockMember()) return;
  const bool word =
      token.kind == TokenKind::kName && token.name < kWordCount && (token.flags & token_flag::kBracketed) == 0;
  if (word) {
    if (BeginsDeclaration(token.name)) {
      // In the middle of a line a header can only follow a routine that has ended.
      if (const Header header = FindHeader(at_); header.name != 0 && (at_ == 0 || !InRoutine())) {
        ParseHeader(header);
        return;
      }
      bodyBegun_ = true;
      if (ParseDeclaration()) return;
    }
    bodyBegun_ = true;
    if (token.name < kWordAccess ? ParseWordStatement(token.name) : ParseContextualStatement(token.name)) return;
  }
  bodyBegun_ = true;
  if (TakeOperator(Operator::kQuestion)) {
    Run(Mode::kOutputList);
    Complete(StatementKind::kCall, first, true);
    return;
  }
  ParseCallOrAssignment();
}

/// A statement that begins with a reserved word; false for the few that are used like names.
bool Parser::ParseWordStatement(NameId word) {
  const std::uint32_t first = at_++;
  switch (word) {
    case kWordCall:
      ParseCallWord();
      return true;
    case kWordLet:
    case kWordRSet:
      ParseAssignment(Role::kLetTarget);
      return true;
    case kWordLSet:
      ParseAssignment(Role::kLetTarget, use_flag::kCopied);
      return true;
    case kWordSet:
      ParseAssignment(Role::kSetTarget);
      return true;
    case kWordIf:
      ParseIf();
      return true;
    case kWordElseIf:
      ParseElseIf();
      return true;
    case kWordElse:
      --at_;
      ParseElse();
      return true;
    case kWordEndIf:
      CloseBlock(BlockStack::Kind::kIf);
      Complete(StatementKind::kEndIf, first, false);
      return true;
    case kWordFor:
      ParseFor();
      return true;
    case kWordNext:
      ParseNext();
      return true;
    case kWordDo:
      ParseDo(false);
      return true;
    case kWordLoop:
      ParseDo(true);
      return true;
    case kWordWhile:
      ParseWhile();
      return true;
    case kWordWend:
      CloseBlock(BlockStack::Kind::kWhile);
      Complete(StatementKind::kWend, first, false);
      return true;
    case kWordSelect:
      ParseSelect();
      return true;
    case kWordCase:
      ParseCase();
      return true;
    case kWordWith:
      ParseWith();
      return true;
    case kWordEnd:
      ParseEnd();
      return true;
    case kWordExit:
      if (!AtEnd() && AtName()) ++at_;
      Complete(StatementKind::kExit, first, true);
      return true;
    case kWordGoTo:
      ParseGoTo(StatementKind::kGoTo);
      return true;
    case kWordGoSub:
      ParseGoTo(StatementKind::kGoSub);
      return true;
    case kWordOn:
      ParseOn();
      return true;
    case kWordResume:
      ParseResume();
      return true;
    case kWordReturn:
      Complete(StatementKind::kReturn, first, true);
      return true;
    case kWordStop:
      Complete(StatementKind::kStop, first, true);
      return true;
    case kWordRaiseEvent:
      ParseRaiseEvent();
      return true;
    case kWordReDim:
      ParseReDim();
      return true;
    case kWordErase:
      ParseErase();
      return true;
    case kWordOpen:
      ParseOpen();
      return true;
    case kWordClose:
    case kWordLock:
    case kWordUnlock:
      ParseFileList(false);
      return true;
    case kWordGet:
      ParseGet(true);
      return true;
    case kWordPut:
      ParseGet(false);
      return true;
    case kWordPrint:
    case kWordWrite:
      ParsePrint();
      return true;
    case kWordInput:
    case kWordSeek:
      if (MakesName(at_)) break;
      ParseFileList(word == kWordInput);
      return true;
    case kWordImplements:
      ParseImplements();
      return true;
    case kWordOption:
      ParseOption();
      return true;
    case kWordDefBool:
      ParseDefType(BuiltinType::kBoolean);
      return true;
    case kWordDefByte:
      ParseDefType(BuiltinType::kByte);
      return true;
    case kWordDefCur:
      ParseDefType(BuiltinType::kCurrency);
      return true;
    case kWordDefDate:
      ParseDefType(BuiltinType::kDate);
      return true;
    case kWordDefDbl:
      ParseDefType(BuiltinType::kDouble);
      return true;
    case kWordDefDec:
      ParseDefType(BuiltinType::kDecimal);
      return true;
    case kWordDefInt:
      ParseDefType(BuiltinType::kInteger);
      return true;
    case kWordDefLng:
      ParseDefType(BuiltinType::kLong);
      return true;
    case kWordDefLngLng:
      ParseDefType(BuiltinType::kLongLong);
      return true;
    case kWordDefLngPtr:
      ParseDefType(BuiltinType::kLongPtr);
      return true;
    case kWordDefObj:
      ParseDefType(BuiltinType::kObject);
      return true;
    case kWordDefSng:
      ParseDefType(BuiltinType::kSingle);
      return true;
    case kWordDefStr:
      ParseDefType(BuiltinType::kString);
      return true;
    case kWordDefVar:
      ParseDefType(BuiltinType::kVariant);
      return true;
    default:
      break;
  }
  at_ = first;
  if (ClassOfWord(word) == WordClass::kName) return false;
  // No statement begins like this; its names are still read.
  ++at_;
  Note(tokens_[first].line, ProblemKind::kUnreadable);
  SkipToEnd();
  Complete(StatementKind::kOther, first, true);
  return true;
}

/// True when the token after a word makes it a name.
bool Parser::MakesName(std::uint32_t next) const {
  return IsOperator(next, Operator::kEqual) || IsOperator(next, Operator::kDot) || IsOperator(next, Operator::kBang);
}

/// A statement that begins with a word that may be a name as well; false when it is one.
bool Parser::ParseContextualStatement(NameId word) {
  const std::uint32_t first = at_;
  switch (word) {
    case kWordLine:
      if (IsWord(at_ + 1, kWordInput)) {
        at_ += 2;
        ParseFileList(true);
        return true;
      }
      break;
    case kWordName:
      if (!IsRename()) return false;
      ++at_;
      ParseName();
      return true;
    case kWordWidth:
      if (!IsOperator(at_ + 1, Operator::kFileNumber)) return false;
      ++at_;
      ParseFileList(false);
      return true;
    case kWordGo:
      if (IsWord(at_ + 1, kWordTo) || IsWord(at_ + 1, kWordSub)) {
        const bool sub = IsWord(at_ + 1, kWordSub);
        at_ += 2;
        ParseGoTo(sub ? StatementKind::kGoSub : StatementKind::kGoTo);
        return true;
      }
      return false;
    case kWordMid:
    case kWordMidB:
      return ParseMid();
    case kWordAttribute:
      if (tokens_[at_ + 1].kind != TokenKind::kName) return false;
      ParseAttribute();
      return true;
    case kWordCircle:
    case kWordPSet:
    case kWordScale:
      break;
    default:
      return false;
  }
  if (!BeginsGraphics(at_ + 1)) return false;
  ++at_;
  ParseGraphics(kNone, word == kWordLine ? Drawing::kLine : Drawing::kPoints);
  Complete(StatementKind::kGraphics, first, true);
  return true;
}

// ------------------------------------------------------------------------------------------ calls and assignments

}  // namespace quillmate::language
