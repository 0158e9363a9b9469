#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/module.h>

#include "names_p.h"

/// Text to logical lines of tokens. No token crosses the end of a logical line, so a damaged line costs nobody else.
namespace quillmate::language {

class Lexer {
 public:
  /// Takes up a text, which must stay until it is read. Its lines are appended to those that the module has.
  void Open(std::string_view text, NamePool& names, Module& module, bool keepComments);
  /// Goes to the line that begins at `offset`.
  void Seek(std::size_t offset);

  /// Reads the next logical line and appends its physical lines to the module, with their classes; false at the end.
  bool Next();

  /// The tokens of the logical line, comments left out; the last one is a kEnd.
  std::span<const Token> Tokens() const noexcept { return {tokens_.data(), count_}; }
  /// Its comments, if they are kept: one token for each physical line of them.
  const std::vector<Token>& Comments() const noexcept { return comments_; }

  std::uint32_t FirstLine() const noexcept { return firstLine_; }
  std::uint32_t LineCount() const noexcept { return line_ - firstLine_ + 1; }

 private:
  static constexpr std::size_t kFirstTokens = 256;

  void EnterTail();
  void BeginPhysicalLine();
  void EndPhysicalLine(bool continues);
  void SkipLineEnd() noexcept;
  void ReadTokens();
  void ReadName();
  void ReadHighCharacter();
  void ReadBracketedName();
  void ReadNumber();
  void ReadRadixNumber(std::uint32_t prefix);
  void ReadString();
  void ReadHash();
  void ReadComment(const char* from);
  void KeepComment(const char* from, const char* to);
  void ReadUnderscore();
  void ReadOperator();
  void ReadColon();
  void ReadAmpersand();
  void ReadOpen();
  void ReadClose();

  const char* FindLineEnd(const char* from) const noexcept;
  const char* FindBracketEnd() noexcept;
  bool AtStatementStart() const noexcept;
  bool EndsOperand() const noexcept;
  bool BeginsLine() const noexcept { return count_ == 0; }
  Token& Push(TokenKind kind, const char* from, const char* to);
  void PushOperator(Operator op, std::uint32_t length);
  void ReadNameSuffix(Token& token);
  void ReadNumberSuffix(Token& token);
  void TakeSuffix(Token& token);

  /// The last lines are read from a copy with kReadAhead zeros after it; everything before them stays where it is, for
  /// there is enough after it.
  std::string_view text_;
  std::size_t tailFrom_ = 0;
  std::vector<char> tail_;
  const char* begin_ = nullptr;  ///< of what is read: the text up to the tail, or the tail
  const char* end_ = nullptr;
  std::uint32_t base_ = 0;  ///< offset of `begin_`
  const char* at_ = nullptr;
  const char* columnBase_ = nullptr;       ///< a token at p has column p - columnBase_ + 1
  const char* noBracketBefore_ = nullptr;  ///< between `at_` and there is no "]"
  NamePool* names_ = nullptr;
  Module* module_ = nullptr;
  std::vector<Token> tokens_ = std::vector<Token>(kFirstTokens);  ///< room; those of the line come first
  std::uint32_t count_ = 0;                                       ///< so many
  std::vector<Token> comments_;
  std::vector<std::uint32_t> open_;  ///< "(" that have no ")" so far
  std::uint32_t firstOfLine_ = 0;    ///< the first token of the physical line
  std::uint32_t line_ = 0, firstLine_ = 0;
  std::uint8_t pending_ = 0;  ///< token_flag of the next token
  bool keepComments_ = false;
  bool lineOpen_ = false;  ///< the logical line goes on
};

/// The blank before "_" that makes it a continuation; the no-break space is none. The text begins at `begin`.
bool IsBlankBeforeContinuation(const char* at, const char* begin) noexcept;

/// True when the last line of `lines`, line break included, may go on in the next one.
bool EndsContinued(std::string_view lines) noexcept;

/// True for what may be between the two "#" of a date literal.
bool IsDateText(std::string_view body) noexcept;

}  // namespace quillmate::language
