#include "parser_p.h"
#include "word_classes_p.h"

/// What is taken out of branches that are never read as code: where routines begin and end, and which names are
/// there.
namespace quillmate::language {

void Parser::ParseDeadLine() {
  KeepDeadNames();
  if (groups_.back().deadInRoutine) return;
  while (tokens_[at_].kind != TokenKind::kEnd) {
    const Header header = FindHeader(at_);
    const bool end = AtWord(kWordEnd) &&
                     (IsWord(at_ + 1, kWordSub) || IsWord(at_ + 1, kWordFunction) || IsWord(at_ + 1, kWordProperty));
    if (header.name != 0) {
      ParseHeader(header);
    } else if (end && routine_ != kNone) {
      at_ += 2;
      EndRoutine(tokens_[at_ - 1].name);
    }
    while (tokens_[at_].kind != TokenKind::kEnd && !TakeOperator(Operator::kColon)) ++at_;
  }
}

/// Names that the line uses; what it declares is left out, for such text often does nothing but spell the names of an
/// Enum.
void Parser::KeepDeadNames() {
  std::uint32_t at = 0;
  while (tokens_[at].kind != TokenKind::kEnd) {
    at = IsOperator(at, Operator::kColon) ? at + 1 : KeepDeadStatement(at);
  }
}

/// The names of the statement at `first`; the token after it.
std::uint32_t Parser::KeepDeadStatement(std::uint32_t first) {
  const auto ends = [this](std::uint32_t at) {
    return tokens_[at].kind == TokenKind::kEnd || IsOperator(at, Operator::kColon);
  };
  std::uint32_t word = first;
  while (tokens_[word].kind == TokenKind::kName && BeginsDeclaration(tokens_[word].name) && !IsWord(word, kWordType) &&
         !IsWord(word, kWordEnum)) {
    ++word;
  }
  const bool block = (IsWord(word, kWordType) || IsWord(word, kWordEnum)) && !ends(word + 1);
  const bool blockEnd = IsWord(first, kWordEnd) && (IsWord(first + 1, kWordType) || IsWord(first + 1, kWordEnum));
  const bool declares = word > first || block || deadBlock_;
  if (block || blockEnd) deadBlock_ = block;
  bool parameters = false;
  for (std::uint32_t at = first; at < word; ++at) {
    parameters = parameters || IsWord(at, kWordSub) || IsWord(at, kWordFunction) || IsWord(at, kWordProperty) ||
                 IsWord(at, kWordEvent);
  }
  std::uint32_t at = first;
  for (; !ends(at); ++at) {
    const Token& token = tokens_[at];
    const bool bracketed = (token.flags & token_flag::kBracketed) != 0;
    if (token.kind != TokenKind::kName || (!bracketed && ClassOfWord(token.name) != WordClass::kName)) continue;
    if (IsOperator(at + 1, Operator::kAssignArgument)) continue;
    if (declares && !IsDeadUse(at, first, parameters)) continue;
    if (at == 0 && IsOperator(1, Operator::kColon)) continue;  // a label
    module_->deadNames.push_back({token.name, token.line, routine_});
  }
  return at;
}

/// Whether a name in a declaration is more than what it declares: a type, a part of a value, a bound.
bool Parser::IsDeadUse(std::uint32_t at, std::uint32_t first, bool parameters) const {
  if (at == first) return false;
  const Token& before = tokens_[at - 1];
  if (before.kind == TokenKind::kOperator) {
    const bool list = IsOperator(at - 1, Operator::kComma) || (parameters && IsOperator(at - 1, Operator::kOpen));
    return !list;
  }
  return IsWord(at - 1, kWordAs) || IsWord(at - 1, kWordNew) || IsWord(at - 1, kWordTo);
}

}  // namespace quillmate::language
