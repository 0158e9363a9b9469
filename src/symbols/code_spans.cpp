#include <quillmate/symbols/code_spans.h>

namespace quillmate::symbols {
namespace {

using language::NameId;
using language::Token;
using language::TokenKind;

bool IsReserved(NameId name) noexcept { return name <= language::kWordXor; }

/// "Property" begins and ends a routine; everywhere else it is a name.
bool IsAccessorWord(const std::vector<Token>& tokens, std::size_t at) noexcept {
  if (tokens[at].name != language::kWordProperty) return false;
  const NameId before = at > 0 ? tokens[at - 1].name : kNone;
  const NameId behind = at + 1 < tokens.size() ? tokens[at + 1].name : kNone;
  return before == language::kWordEnd || before == language::kWordExit || behind == language::kWordGet ||
         behind == language::kWordLet || behind == language::kWordSet;
}

bool IsKeyword(const std::vector<Token>& tokens, std::size_t at) noexcept {
  const Token& token = tokens[at];
  if (token.kind == TokenKind::kDirective) return true;
  if (token.kind != TokenKind::kName || (token.flags & language::token_flag::kBracketed) != 0) return false;
  const bool isMember = at > 0 && tokens[at - 1].kind == TokenKind::kOperator &&
                        tokens[at - 1].detail == static_cast<std::uint8_t>(language::Operator::kDot);
  return !isMember && (IsReserved(token.name) || IsAccessorWord(tokens, at));
}

}  // namespace

std::vector<CodeSpan> SpansOf(const ReferenceIndex& index, Index module) {
  language::Workspace workspace;
  language::Module code;
  index.ParseAgain(module, workspace, code);
  std::vector<CodeSpan> spans;
  for (std::size_t at = 0; at < code.tokens.size(); ++at) {
    const Token& token = code.tokens[at];
    if (token.kind == TokenKind::kString || token.kind == TokenKind::kComment) {
      const auto kind = token.kind == TokenKind::kString ? CodeSpan::Kind::kString : CodeSpan::Kind::kComment;
      spans.push_back({token.offset, token.length, kind});
    } else if (IsKeyword(code.tokens, at)) {
      spans.push_back({token.offset, token.length, CodeSpan::Kind::kKeyword});
    }
  }
  return spans;
}

}  // namespace quillmate::symbols
