#include <algorithm>

#include "parser_p.h"
#include "word_classes_p.h"

/// Where routines begin and end.
namespace quillmate::language {

/// The header that begins at a token: modifiers, the kind's words and a name, which can be any word.
Parser::Header Parser::FindHeader(std::uint32_t from) const {
  Header header;
  std::uint32_t at = from;
  const Modifiers modifiers = ReadModifiers(at);
  if (modifiers.dim) return header;
  if (IsWord(at, kWordSub)) {
    header.kind = DeclarationKind::kSub;
  } else if (IsWord(at, kWordFunction)) {
    header.kind = DeclarationKind::kFunction;
  } else if (IsWord(at, kWordProperty)) {
    ++at;
    if (IsWord(at, kWordGet)) {
      header.kind = DeclarationKind::kPropertyGet;
    } else if (IsWord(at, kWordLet)) {
      header.kind = DeclarationKind::kPropertyLet;
    } else if (IsWord(at, kWordSet)) {
      header.kind = DeclarationKind::kPropertySet;
    } else {
      return header;
    }
  } else {
    return header;
  }
  if (tokens_[at + 1].kind == TokenKind::kName) header.name = at + 1;
  header.visibility = modifiers.visibility;
  header.scopeWritten = modifiers.scopeWritten;
  header.isStatic = modifiers.isStatic;
  return header;
}

/// True for a further header of the open routine: one in another branch of the "#If" that holds the first, or right
/// below it in an "#If" of its own.
bool Parser::IsVariant(const Header& header) const {
  if (routine_ == kNone) return false;
  if (headerGroups_ > 0) return true;
  const Routine& open = module_->routines[routine_];
  const Declaration& first = module_->declarations[open.declaration];
  return !bodyBegun_ && headerConditional_ && !groups_.empty() && first.name == tokens_[header.name].name &&
         first.kind == header.kind;
}

void Parser::ParseHeader(const Header& header) {
  const std::uint32_t first = at_;
  const std::uint32_t firstLine = tokens_[first].line;
  const bool variant = IsVariant(header);
  if (routine_ != kNone && !variant) CloseWithoutEnd(lexer_->FirstLine() - 1);
  if (block_ != kNone) CloseBlockDeclaration(lexer_->FirstLine() - 1);
  if (!variant) OpenRoutine(header, first);
  lineRoutine_ = routine_;

  const Token& name = tokens_[header.name];
  const Index declaration = Declare(name, header.kind, header.visibility, kNone);
  Decl(declaration).routine = routine_;
  if (header.isStatic) Decl(declaration).flags |= declaration_flag::kStatic;
  if (header.scopeWritten) Decl(declaration).flags |= declaration_flag::kScopeWritten;
  AddVariant(declaration, firstLine);
  at_ = header.name + 1;
  if (activity_ == Activity::kDead) {
    Decl(declaration).flags |= declaration_flag::kDead;
    return;
  }
  ParseParameters(declaration);
  const bool valued = header.kind == DeclarationKind::kFunction || header.kind == DeclarationKind::kPropertyGet;
  if (valued || AtWord(kWordAs)) ParseType(declaration, name, false);
  if (TakeWord(kWordStatic)) Decl(declaration).flags |= declaration_flag::kStatic;
  module_->variants.back().lastLine = module_->routines[routine_].headerLastLine = tokens_[at_ - 1].line;
  SkipToEnd();
  Complete(StatementKind::kHeader, first, false);
}

void Parser::OpenRoutine(const Header& header, std::uint32_t firstToken) {
  routine_ = static_cast<Index>(module_->routines.size());
  Routine& routine = module_->routines.emplace_back();
  routine.declaration = kNone;
  routine.kind = header.kind;
  routine.endKind = header.kind;
  routine.firstLine = tokens_[firstToken].line;
  routine.firstOffset = tokens_[firstToken].offset;
  routine.firstVariant = static_cast<Index>(module_->variants.size());
  routine.firstUse = static_cast<Index>(module_->uses.size());
  routine.firstDeclaration = static_cast<Index>(module_->declarations.size());
  routine.activity = activity_;
  routine.metrics.complexity = 1;
  bodyBegun_ = false;
  headerConditional_ = !groups_.empty();
  blocks_.Restore(kNone);
  if (groups_.empty()) blocks_.Clear();
}

/// The active header counts, else the first.
void Parser::AddVariant(Index declaration, std::uint32_t firstLine) {
  Routine& routine = module_->routines[routine_];
  module_->variants.push_back({routine_, declaration, firstLine, firstLine, activity_ == Activity::kActive});
  ++routine.variantCount;
  routine.headerLastLine = firstLine;
  if (routine.declaration == kNone) {
    routine.declaration = declaration;
    return;
  }
  if (activity_ < routine.activity) {
    Decl(routine.declaration).flags |= declaration_flag::kVariant;
    routine.declaration = declaration;
    routine.kind = Decl(declaration).kind;
    routine.activity = activity_;
  } else {
    Decl(declaration).flags |= declaration_flag::kVariant;
  }
}

/// At the word after End.
void Parser::EndRoutine(NameId word) {
  const Token& last = tokens_[at_ - 1];
  if (routine_ == kNone) {
    Note(last.line, ProblemKind::kStrayEnd);
    return;
  }
  Routine& routine = module_->routines[routine_];
  routine.hasEnd = true;
  routine.endKind = word == kWordSub        ? DeclarationKind::kSub
                    : word == kWordFunction ? DeclarationKind::kFunction
                                            : DeclarationKind::kPropertyGet;
  CloseRoutine(last.line, last.offset + last.length);
}

void Parser::CloseWithoutEnd(std::uint32_t lastLine) {
  const Routine& routine = module_->routines[routine_];
  Note(routine.firstLine, ProblemKind::kMissingEnd);
  lastLine = std::max(lastLine, routine.firstLine);
  const std::uint32_t endOffset =
      lastLine < module_->lines.size() ? module_->lines[lastLine].offset : static_cast<std::uint32_t>(text_.size());
  CloseRoutine(lastLine, endOffset);
}

void Parser::CloseRoutine(std::uint32_t lastLine, std::uint32_t endOffset) {
  Routine& routine = module_->routines[routine_];
  if (blocks_.Top() != kNone) Note(lastLine, ProblemKind::kUnclosedBlock);
  routine.lastLine = std::max(lastLine, routine.firstLine);
  routine.endOffset = endOffset;
  routine.oneLine = routine.firstLine == routine.lastLine;
  routine.endUse = static_cast<Index>(module_->uses.size());
  routine.endDeclaration = static_cast<Index>(module_->declarations.size());
  SettleVariants(routine);
  routine_ = kNone;
  headerGroups_ = 0;
  blocks_.Restore(kNone);
  inlineIfs_.clear();
}

/// Ties what is in the routine to the header that counts.
void Parser::SettleVariants(Routine& routine) {
  Declaration& header = Decl(routine.declaration);
  header.firstLine = routine.firstLine;
  header.lastLine = routine.lastLine;
  if (routine.variantCount == 1) return;
  for (Index i = routine.firstVariant; i < routine.firstVariant + routine.variantCount; ++i) {
    Decl(module_->variants[i].declaration).firstLine = routine.firstLine;
    Decl(module_->variants[i].declaration).lastLine = routine.lastLine;
  }
  for (Index i = routine.firstDeclaration; i < routine.endDeclaration; ++i) {
    Declaration& declaration = Decl(i);
    const bool local = declaration.kind != DeclarationKind::kParameter && declaration.visibility == Visibility::kLocal;
    if (local) declaration.parent = routine.declaration;
  }
}

void Parser::CountLines(Routine& routine) const {
  RoutineMetrics& metrics = routine.metrics;
  for (std::uint32_t line = routine.firstLine; line <= routine.lastLine; ++line) {
    const PhysicalLine& physical = module_->lines[line - 1];
    metrics.codeLines += physical.lineClass == LineClass::kCode;
    metrics.commentLines += physical.lineClass == LineClass::kComment;
    metrics.blankLines += physical.lineClass == LineClass::kBlank;
    metrics.directiveLines += physical.lineClass == LineClass::kDirective;
    metrics.trailingComments += physical.trailingComment;
    metrics.inactiveLines += physical.activity != Activity::kActive && physical.lineClass != LineClass::kDirective;
  }
}

/// The comment right above the header, as far as the routine before.
void Parser::FindDescription(Routine& routine, std::uint32_t previousLast) const {
  std::uint32_t line = routine.firstLine;
  while (line - 1 > previousLast && module_->lines[line - 2].lineClass == LineClass::kComment) --line;
  if (line == routine.firstLine) return;
  routine.descriptionFirst = line;
  routine.descriptionLast = routine.firstLine - 1;
}

}  // namespace quillmate::language
