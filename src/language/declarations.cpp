#include <algorithm>

#include "parser_p.h"
#include "word_classes_p.h"

namespace quillmate::language {
namespace {

/// A name's first letter for DefInt and its kin, 26 for others than A to Z.
std::size_t LetterIndex(std::string_view name) noexcept {
  const char c = name.empty() ? '\0' : static_cast<char>(name.front() | 0x20);
  return c >= 'a' && c <= 'z' ? static_cast<std::size_t>(c - 'a') : 26;
}

}  // namespace

Index Parser::Declare(const Token& token, DeclarationKind kind, Visibility visibility, Index parent) {
  const auto index = static_cast<Index>(module_->declarations.size());
  Declaration& declaration = module_->declarations.emplace_back();
  declaration.offset = token.offset;
  declaration.line = token.line;
  declaration.column = token.column;
  declaration.name = token.name;
  declaration.length = static_cast<std::uint16_t>(std::min<std::uint32_t>(token.length, 0xFFFF));
  declaration.kind = kind;
  declaration.visibility = visibility;
  declaration.type = BuiltinType::kUndeclared;
  declaration.parent = parent;
  declaration.routine = visibility == Visibility::kLocal ? routine_ : kNone;
  declaration.typeUse = kNone;
  declaration.firstLine = lexer_->FirstLine();
  declaration.lastLine = lexer_->FirstLine() + lexer_->LineCount() - 1;
  declaration.firstChild = kNone;
  if (activity_ != Activity::kActive) declaration.flags |= declaration_flag::kInactive;
  if ((token.flags & token_flag::kBracketed) != 0) declaration.flags |= declaration_flag::kBracketed;
  if ((token.flags & token_flag::kSuffixed) != 0) {
    declaration.flags |= declaration_flag::kSuffixed;
    declaration.type = static_cast<BuiltinType>(token.detail);
  }
  return index;
}

/// A parameter or member of `owner`.
Index Parser::DeclareChild(const Token& token, DeclarationKind kind, Index owner) {
  const bool member = kind == DeclarationKind::kTypeMember || kind == DeclarationKind::kEnumMember;
  const Index child = Declare(token, kind, member ? Decl(owner).visibility : Visibility::kLocal, owner);
  Declaration& parent = Decl(owner);
  if (!member) Decl(child).routine = parent.routine;
  if (parent.childCount++ == 0) parent.firstChild = child;
  Decl(child).ordinal = static_cast<std::uint16_t>(std::min<std::uint32_t>(parent.childCount, 0xFFFF));
  return child;
}

BuiltinType Parser::DefTypeOf(const Token& name) const {
  std::string_view text = text_.substr(name.offset, name.length);
  if (text.starts_with('[')) text.remove_prefix(1);
  const std::size_t letter = LetterIndex(text);
  return letter < 26 ? defTypes_[letter] : defTypes_[0] == defTypes_[25] ? defTypes_[0] : BuiltinType::kUndeclared;
}

/// `As [New] type [* length]`, `As type()`; at As.
Parser::TypeClause Parser::ParseTypeClause(Index declaration, bool withEvents) {
  TypeClause clause;
  ++at_;
  const bool create = TakeWord(kWordNew);
  if (create) clause.flags |= declaration_flag::kAsNew;
  if (!AtName()) return clause;
  const std::uint32_t first = at_;
  clause.type = IsOperator(at_ + 1, Operator::kDot) ? BuiltinType::kNamed : TypeOfWord(tokens_[at_].name);
  if (clause.type == BuiltinType::kNamed || MayBeDeclared(clause.type)) {
    const std::uint32_t flags = (create ? use_flag::kCreates : 0) | (withEvents ? use_flag::kWithEvents : 0);
    clause.use = EmitQualified(create ? Role::kNew : Role::kType, flags, declaration);
  } else {
    ++at_;
  }
  if (TakeOperator(Operator::kTimes)) {
    clause.flags |= declaration_flag::kFixedLength;
    ParseConstantValue();
  }
  if (AtOperator(Operator::kOpen) && IsOperator(at_ + 1, Operator::kClose)) {
    clause.flags |= declaration_flag::kArray;
    at_ += 2;
  }
  clause.offset = tokens_[first].offset;
  clause.length = tokens_[at_ - 1].offset + tokens_[at_ - 1].length - clause.offset;
  return clause;
}

void Parser::ApplyType(Index index, const TypeClause& clause) {
  Declaration& declaration = Decl(index);
  declaration.flags |= clause.flags;
  declaration.typeUse = clause.use;
  declaration.typeOffset = clause.offset;
  declaration.typeLength = clause.length;
  if (clause.type != BuiltinType::kUndeclared) declaration.type = clause.type;
}

/// The type of a name whose declaration has got this far: As clause, suffix or DefType.
void Parser::ParseType(Index declaration, const Token& name, bool withEvents) {
  if (AtWord(kWordAs)) {
    ApplyType(declaration, ParseTypeClause(declaration, withEvents));
  } else if ((name.flags & token_flag::kSuffixed) == 0) {
    const BuiltinType type = DefTypeOf(name);
    Decl(declaration).type = type;
    if (type != BuiltinType::kUndeclared) Decl(declaration).flags |= declaration_flag::kFromDefType;
  }
}

/// An expression whose names bind from the module on; up to a comma or ")".
void Parser::ParseConstantValue() {
  const std::uint32_t outer = context_;
  context_ |= use_flag::kConstant;
  Run(Mode::kToComma);
  context_ = outer;
}

/// "(...)" after a declared name.
void Parser::ParseBounds(Index declaration) {
  if (!AtOperator(Operator::kOpen)) return;
  Decl(declaration).flags |= declaration_flag::kArray;
  if (!IsOperator(at_ + 1, Operator::kClose)) Decl(declaration).flags |= declaration_flag::kBounds;
  ParseConstantValue();
}

// ------------------------------------------------------------------------------------------------------ modifiers

/// Words before a declaration or header; `at` goes after them.
Parser::Modifiers Parser::ReadModifiers(std::uint32_t& at) const {
  Modifiers modifiers;
  for (; tokens_[at].kind == TokenKind::kName && (tokens_[at].flags & token_flag::kBracketed) == 0; ++at) {
    switch (tokens_[at].name) {
      case kWordPublic:
        modifiers.visibility = Visibility::kPublic;
        break;
      case kWordPrivate:
        modifiers.visibility = Visibility::kPrivate;
        break;
      case kWordFriend:
        modifiers.visibility = Visibility::kFriend;
        break;
      case kWordGlobal:
        modifiers.visibility = Visibility::kGlobal;
        break;
      case kWordStatic:
        modifiers.isStatic = true;
        continue;
      case kWordDim:
        modifiers.dim = true;
        continue;
      case kWordShared:
        if (!modifiers.dim) return modifiers;
        continue;
      default:
        return modifiers;
    }
    modifiers.scopeWritten = true;
  }
  return modifiers;
}

/// A declaration that is no routine; false when the statement is none.
bool Parser::ParseDeclaration() {
  const std::uint32_t first = at_;
  std::uint32_t at = at_;
  Modifiers modifiers = ReadModifiers(at);
  const NameId word = tokens_[at].kind == TokenKind::kName && (tokens_[at].flags & token_flag::kBracketed) == 0
                          ? tokens_[at].name
                          : kNone;
  const bool nameFollows = tokens_[at].kind == TokenKind::kName && tokens_[at + 1].kind == TokenKind::kName;
  const bool variables = (at > at_ && tokens_[at].kind == TokenKind::kName) || (word == kWordWithEvents && nameFollows);
  at_ = at + 1;
  if (word == kWordConst && nameFollows) {
    ParseConstants(modifiers);
  } else if (word == kWordDeclare && nameFollows) {
    ParseDeclare(modifiers);
  } else if (word == kWordEvent && nameFollows && !IsWord(at + 1, kWordAs)) {
    ParseEvent(modifiers);
  } else if (word == kWordEnum && nameFollows) {
    ParseBlockStart(DeclarationKind::kEnum, modifiers);
  } else if (word == kWordType && nameFollows) {
    ParseBlockStart(DeclarationKind::kType, modifiers);
  } else if (variables) {
    at_ = at;
    ParseVariables(modifiers);
  } else {
    at_ = first;
    return false;
  }
  SkipToEnd();
  Complete(StatementKind::kDeclaration, first, false);
  return true;
}

/// Where a variable or constant belongs: to the routine, unless a word says that it is the module's.
Visibility Parser::ScopeOf(const Modifiers& modifiers) const {
  if (modifiers.scopeWritten) return modifiers.visibility;
  return InRoutine() ? Visibility::kLocal : Visibility::kPrivate;
}

Index Parser::RoutineDeclaration() const { return routine_ == kNone ? kNone : module_->routines[routine_].declaration; }

/// At a name that a variable can have.
bool Parser::AtFreeName() const {
  if (!AtName()) return false;
  return (tokens_[at_].flags & token_flag::kBracketed) != 0 || ClassOfWord(tokens_[at_].name) == WordClass::kName;
}

void Parser::ParseVariables(const Modifiers& modifiers) {
  const Visibility visibility = ScopeOf(modifiers);
  const Index parent = visibility == Visibility::kLocal ? RoutineDeclaration() : kNone;
  while (!AtEnd()) {
    const std::uint32_t before = at_;
    const bool withEvents = AtWord(kWordWithEvents) && tokens_[at_ + 1].kind == TokenKind::kName;
    if (withEvents) ++at_;
    if (AtFreeName()) {
      const Token& name = tokens_[at_++];
      const Index variable = Declare(name, DeclarationKind::kVariable, visibility, parent);
      if (withEvents) Decl(variable).flags |= declaration_flag::kWithEvents;
      if (modifiers.isStatic) Decl(variable).flags |= declaration_flag::kStatic;
      if (modifiers.scopeWritten) Decl(variable).flags |= declaration_flag::kScopeWritten;
      ParseBounds(variable);
      ParseType(variable, name, withEvents);
    }
    // What does not belong here costs its item.
    while (!AtEnd() && !AtOperator(Operator::kComma)) {
      const std::uint32_t stray = at_;
      Run(Mode::kToComma);
      if (at_ == stray) ++at_;
    }
    if (!TakeOperator(Operator::kComma) && at_ == before) ++at_;
  }
}

void Parser::ParseConstants(const Modifiers& modifiers) {
  const Visibility visibility = ScopeOf(modifiers);
  const Index parent = visibility == Visibility::kLocal ? RoutineDeclaration() : kNone;
  while (AtFreeName()) {
    const Token& name = tokens_[at_++];
    const Index constant = Declare(name, DeclarationKind::kConstant, visibility, parent);
    if (modifiers.scopeWritten) Decl(constant).flags |= declaration_flag::kScopeWritten;
    ParseType(constant, name, false);
    if (TakeOperator(Operator::kEqual)) {
      Decl(constant).flags |= declaration_flag::kDefault;
      ParseConstantValue();
    }
    if (!TakeOperator(Operator::kComma)) break;
  }
}

/// `Declare [PtrSafe] Sub|Function name [CDecl] Lib "file" [Alias "name"] [(parameters)] [As type]`; after Declare.
void Parser::ParseDeclare(const Modifiers& modifiers) {
  const bool ptrSafe = TakeWord(kWordPtrSafe);
  const bool function = AtWord(kWordFunction);
  if (!function && !AtWord(kWordSub)) return;
  ++at_;
  if (!AtName()) return;
  const Token& name = tokens_[at_++];
  const Index declare = Declare(name, function ? DeclarationKind::kDeclareFunction : DeclarationKind::kDeclareSub,
                                modifiers.visibility, kNone);
  if (ptrSafe) Decl(declare).flags |= declaration_flag::kPtrSafe;
  if (modifiers.scopeWritten) Decl(declare).flags |= declaration_flag::kScopeWritten;
  TakeWord(kWordCDecl);
  for (const NameId word : {kWordLib, kWordAlias}) {
    if (TakeWord(word) && tokens_[at_].kind == TokenKind::kString) ++at_;
  }
  ParseParameters(declare);
  if (function) ParseType(declare, name, false);
}

void Parser::ParseEvent(const Modifiers& modifiers) {
  const Index event = Declare(tokens_[at_++], DeclarationKind::kEvent, modifiers.visibility, kNone);
  if (modifiers.scopeWritten) Decl(event).flags |= declaration_flag::kScopeWritten;
  ParseParameters(event);
}

// ----------------------------------------------------------------------------------------------------- parameters

/// "(...)" after the name of a routine, Declare or event.
void Parser::ParseParameters(Index owner) {
  if (!TakeOperator(Operator::kOpen)) return;
  Decl(owner).flags |= declaration_flag::kParameterList;
  while (!AtEnd()) {
    if (TakeOperator(Operator::kClose)) return;
    ParseParameter(owner);
    while (!AtEnd() && !AtOperator(Operator::kComma) && !AtOperator(Operator::kClose)) {
      const std::uint32_t stray = at_;
      Run(Mode::kToComma);
      if (at_ == stray) ++at_;
    }
    TakeOperator(Operator::kComma);
  }
}

void Parser::ParseParameter(Index owner) {
  std::uint32_t flags = 0;
  for (; AtName(); ++at_) {
    if (AtWord(kWordOptional)) {
      flags |= declaration_flag::kOptional;
    } else if (AtWord(kWordByVal)) {
      flags |= declaration_flag::kByVal;
    } else if (AtWord(kWordByRef)) {
      flags |= declaration_flag::kByRef;
    } else if (AtWord(kWordParamArray)) {
      flags |= declaration_flag::kParamArray;
    } else {
      break;
    }
  }
  if (!AtName() || AtWord(kWordAs)) return;
  const Token& name = tokens_[at_++];
  const Index parameter = DeclareChild(name, DeclarationKind::kParameter, owner);
  Decl(parameter).flags |= flags;
  ParseBounds(parameter);
  ParseType(parameter, name, false);
  if (TakeOperator(Operator::kEqual)) {
    Decl(parameter).flags |= declaration_flag::kDefault;
    ParseConstantValue();
  }
}

// ------------------------------------------------------------------------------------------- module-wide settings

void Parser::ParseOption() {
  const std::uint32_t first = at_ - 1;
  ModuleFacts& facts = module_->facts;
  if (TakeWord(kWordExplicit)) {
    facts.optionExplicit = facts.optionExplicit || activity_ == Activity::kActive;
  } else if (TakeWord(kWordBase)) {
    if (tokens_[at_].kind == TokenKind::kInteger) {
      facts.optionBase = text_[tokens_[at_].offset] == '1' ? 1 : 0;
      ++at_;
    }
  } else if (TakeWord(kWordCompare)) {
    facts.optionCompareText = AtWord(kWordText) || AtWord(kWordDatabase);
    if (AtName()) ++at_;
  } else if (TakeWord(kWordPrivate)) {
    facts.optionPrivateModule = TakeWord(kWordModule);
  }
  SkipToEnd();
  Complete(StatementKind::kOption, first, false);
}

/// `DefInt A-Z, X`: letters and ranges.
void Parser::ParseDefType(BuiltinType type) {
  const std::uint32_t first = at_ - 1;
  while (AtName()) {
    const std::size_t from = LetterIndex(text_.substr(tokens_[at_].offset, 1));
    std::size_t to = from;
    ++at_;
    if (TakeOperator(Operator::kMinus) && AtName()) to = LetterIndex(text_.substr(tokens_[at_++].offset, 1));
    for (std::size_t letter = from; letter <= to && letter < 26; ++letter) defTypes_[letter] = type;
    if (!TakeOperator(Operator::kComma)) break;
  }
  SkipToEnd();
  Complete(StatementKind::kDefType, first, false);
}

}  // namespace quillmate::language
