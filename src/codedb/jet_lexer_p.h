#pragma once

#include <string_view>
#include <vector>

namespace quillmate::codedb {

enum class TokenKind { Word, BracketName, Text, Number, Operator };

/// One token of a statement. `source` is its whole spelling, quotes and brackets included.
struct Token {
  TokenKind kind = TokenKind::Operator;
  std::string_view source;

  /// True for this operator, or for this word without regard to case.
  bool Is(std::string_view text) const noexcept;
};

/// All tokens of a statement, without the closing semicolon. In a form "?" is an operator. Throws files::Failure.
std::vector<Token> ScanJet(std::string_view statement, bool form);

}  // namespace quillmate::codedb
