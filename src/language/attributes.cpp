#include <algorithm>
#include <string>

#include <quillmate/text/operations.h>

#include "parser_p.h"

/// "Attribute" lines: what the file says of the module and its members.
namespace quillmate::language {
namespace {

/// How far back the declaration is that an Attribute line speaks of.
constexpr std::size_t kDeclarationsBack = 64;

std::string_view Unquoted(std::string_view value) {
  if (value.size() < 2 || value.front() != '"') return value;
  return value.substr(1, value.size() - (value.back() == '"' ? 2 : 1));
}

bool IsTrue(std::string_view value) { return text::EqualsIgnoreCase(Unquoted(value), "True") || value == "-1"; }

}  // namespace

/// `Attribute VB_Name = "x"`, `Attribute member.VB_UserMemId = 0`; at the word.
void Parser::ParseAttribute() {
  const std::uint32_t first = at_++;
  Attribute attribute{};
  attribute.line = tokens_[first].line;
  attribute.member = attribute.declaration = kNone;
  const std::uint32_t member = at_;
  attribute.name = tokens_[at_++].name;
  while (AtOperator(Operator::kDot) && tokens_[at_ + 1].kind == TokenKind::kName) {
    if (attribute.member == kNone) attribute.member = tokens_[member].name;
    attribute.name = tokens_[at_ + 1].name;
    at_ += 2;
  }
  if (TakeOperator(Operator::kEqual) && tokens_[at_].kind != TokenKind::kEnd) {
    const std::uint32_t value = at_;
    while (tokens_[at_].kind != TokenKind::kEnd && !AtOperator(Operator::kComma)) ++at_;
    const Token& last = tokens_[std::max(at_, value + 1) - 1];
    attribute.value = {tokens_[value].offset, last.offset + last.length - tokens_[value].offset};
  }
  at_ = tokenCount_;
  if (attribute.member != kNone) {
    Emit(tokens_[member], Role::kAttributeMember);
    attribute.declaration = FindAttributed(attribute.member);
  } else {
    TakeModuleAttribute(attribute);
  }
  module_->attributes.push_back(attribute);
  if (first != 0) return;
  const std::uint32_t from = lexer_->FirstLine();
  const std::uint32_t to = from + lexer_->LineCount() - 1;
  for (std::uint32_t line = from; line <= to; ++line) module_->lines[line - 1].lineClass = LineClass::kAttribute;
  Hide(from, to);
}

/// The member that an Attribute line after its declaration names: the routine around it or one of the last names.
Index Parser::FindAttributed(NameId member) const {
  const Index routine = RoutineDeclaration();
  if (routine != kNone && module_->declarations[routine].name == member) return routine;
  const std::size_t count = module_->declarations.size();
  for (std::size_t back = 1; back <= std::min(count, kDeclarationsBack); ++back) {
    const Declaration& declaration = module_->declarations[count - back];
    if (declaration.name == member && declaration.parent == kNone) return static_cast<Index>(count - back);
  }
  return kNone;
}

void Parser::TakeModuleAttribute(const Attribute& attribute) {
  ModuleFacts& facts = module_->facts;
  const std::string_view value = text_.substr(attribute.value.offset, attribute.value.length);
  facts.hasHeader = true;
  switch (attribute.name) {
    case kWordVB_Name:
      facts.name = Unquoted(value);
      break;
    case kWordVB_Description:
      facts.description = Unquoted(value);
      break;
    case kWordVB_Base:
      facts.base = Unquoted(value);
      classAttributes_ = true;
      break;
    case kWordVB_PredeclaredId:
      facts.predeclared = IsTrue(value);
      classAttributes_ = true;
      break;
    case kWordVB_Exposed:
      facts.exposed = IsTrue(value);
      classAttributes_ = true;
      break;
    case kWordVB_Creatable:
      facts.creatable = IsTrue(value);
      break;
    case kWordVB_GlobalNameSpace:
      facts.globalNameSpace = IsTrue(value);
      break;
    case kWordVB_Control:
      TakeControl(attribute);
      break;
    default:
      break;
  }
}

/// `"cmdStart, 3, 0, MSForms, CommandButton"`: name, two numbers, library, class.
void Parser::TakeControl(const Attribute& attribute) {
  std::uint32_t from = attribute.value.offset + 1;
  const std::string_view value = Unquoted(text_.substr(attribute.value.offset, attribute.value.length));
  Control& control = module_->controls.emplace_back();
  control.name = kNone;
  control.parent = kNone;
  control.index = -1;
  control.line = attribute.line;
  std::size_t part = 0;
  for (const std::string_view word : text::Split(value, ",")) {
    const std::string_view trimmed = text::Trim(word);
    const Span span{from + static_cast<std::uint32_t>(trimmed.data() - word.data()),
                    static_cast<std::uint32_t>(trimmed.size())};
    if (part == 0) {
      control.nameText = span;
      control.name = names_->Copied(trimmed);
    }
    if (part == 3) control.type = span;
    if (part == 4) control.type.length = span.offset + span.length - control.type.offset;
    from += static_cast<std::uint32_t>(word.size()) + 1;
    ++part;
  }
}

}  // namespace quillmate::language
