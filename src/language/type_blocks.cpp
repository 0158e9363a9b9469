#include <algorithm>

#include "parser_p.h"
#include "word_classes_p.h"

/// Type and Enum with their members.
namespace quillmate::language {

/// After the word Type or Enum: the word that follows is the name, whatever it is.
void Parser::ParseBlockStart(DeclarationKind kind, const Modifiers& modifiers) {
  if (block_ != kNone) CloseBlockDeclaration(lexer_->FirstLine() - 1);
  block_ = Declare(tokens_[at_++], kind, modifiers.visibility, kNone);
  if (modifiers.scopeWritten) Decl(block_).flags |= declaration_flag::kScopeWritten;
}

void Parser::CloseBlockDeclaration(std::uint32_t lastLine) {
  Decl(block_).lastLine = std::max(Decl(block_).firstLine, lastLine);
  block_ = kNone;
}

/// In a Type or Enum: true for a member; every word can be the name of one.
bool Parser::IsBlockMember() const {
  const Token& name = tokens_[at_];
  if (name.kind != TokenKind::kName) return false;
  const bool reserved = name.name < kWordAccess && (name.flags & token_flag::kBracketed) == 0;
  if (!reserved) return !IsWord(at_, kWordProperty) || FindHeader(at_).name == 0;
  if (IsWord(at_ + 1, kWordAs)) return true;
  const Token& next = tokens_[at_ + 1];
  return next.kind != TokenKind::kName && FindHeader(at_).name == 0;
}

/// False when the statement is no member: the block ends before it then, unless it is the block's own End.
bool Parser::ParseBlockMember() {
  if (!IsBlockMember()) {
    const bool end = AtWord(kWordEnd) && (IsWord(at_ + 1, kWordType) || IsWord(at_ + 1, kWordEnum));
    if (!end && AtName()) CloseBlockDeclaration(lexer_->FirstLine() - 1);
    return false;
  }
  const std::uint32_t first = at_;
  const bool enumeration = Decl(block_).kind == DeclarationKind::kEnum;
  const Token& name = tokens_[at_++];
  const Index member =
      DeclareChild(name, enumeration ? DeclarationKind::kEnumMember : DeclarationKind::kTypeMember, block_);
  if (enumeration) {
    if (TakeOperator(Operator::kEqual)) {
      Decl(member).flags |= declaration_flag::kDefault;
      ParseConstantValue();
    }
  } else {
    ParseBounds(member);
    ParseType(member, name, false);
  }
  SkipToEnd();
  Complete(StatementKind::kBlockMember, first, false);
  return true;
}

}  // namespace quillmate::language
