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

/// All tokens of a statement, without the closing semicolon. Throws JetSyntaxError.
std::vector<Token> ScanJet(std::string_view statement);

/// The position behind the text literal whose opening quote stands at `start`; npos when it is not closed. `doubled`
/// becomes true when a doubled quote stands inside.
std::size_t SkipText(std::string_view statement, std::size_t start, bool& doubled) noexcept;

/// The position behind the number that begins at `start`; `start` when there is none.
std::size_t SkipNumber(std::string_view statement, std::size_t start) noexcept;

}  // namespace quillmate::codedb
