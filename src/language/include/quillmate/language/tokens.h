#pragma once

#include <cstdint>

/// Lines and tokens of a module: what its text falls into before anything means anything. Offsets and lengths count
/// bytes of the UTF-8 text that was parsed; lines are physical lines of that text, 1-based; columns count characters
/// (code points), 1-based. An index that says `kNone` points nowhere.
namespace quillmate::language {

using Index = std::uint32_t;
inline constexpr Index kNone = 0xFFFFFFFF;

/// A name without regard to case (umlauts included), type suffix and brackets: two names of one module are the same
/// exactly if their ids are equal. Ids below `kWordCount` are the words of words.h and the same in every module; the
/// others belong to one module (`Module::NameText`, `Module::NameHash`).
using NameId = std::uint32_t;

// ---------------------------------------------------------------------------------------------------------- lines

enum class LineClass : std::uint8_t {
  kBlank,
  kComment,    ///< nothing but a comment, continued ones included
  kCode,       ///< at least one token of code; a comment after it changes nothing
  kDirective,  ///< "#If" and its kin
  kAttribute,  ///< "Attribute ...": the editor hides it
  kHeader,     ///< of the file, before its code: VERSION, Begin ... End, form descriptions; the editor hides it
};

/// What conditional compilation makes of a line. Inactive code is read like any other and its records are marked; dead
/// code is in a branch whose own condition is a literal that is never true ("#If False", "#If 0"): its routines are
/// listed, nothing else in it declares or uses anything; its names are only kept as names.
enum class Activity : std::uint8_t { kActive, kInactive, kDead };

struct PhysicalLine {
  std::uint32_t offset;  ///< of its first byte; the line reaches to the next one's, line break included
  LineClass lineClass;
  Activity activity;
  bool trailingComment;  ///< code with a comment after it
  bool continues;        ///< ends in " _": the next line goes on with it
};

/// A line with those that continue it.
struct LogicalLine {
  std::uint32_t firstLine;
  std::uint32_t lineCount;
  Index firstUse;    ///< its uses are those before the next logical line's first
  Index firstToken;  ///< likewise; kNone unless tokens are kept
  Index routine;     ///< the routine that it belongs to
};

/// Lines that the editor does not show: the file's header and Attribute lines.
struct HiddenLines {
  std::uint32_t first, last;
  std::uint32_t hiddenBefore;  ///< lines hidden above `first`
};

// --------------------------------------------------------------------------------------------------------- tokens

enum class TokenKind : std::uint8_t {
  kName,  ///< words included: `name` tells which; brackets and suffix belong to the token
  kInteger,
  kFloat,
  kString,  ///< with its quotes; an unclosed one ends with its line
  kDate,
  kOperator,   ///< `detail` holds the Operator
  kDirective,  ///< the "#" that begins a directive
  kComment,    ///< from "'" or Rem to the end of its physical line; a continued comment is one token for each line
  kUnknown,    ///< one character that belongs to nothing
  kEnd,        ///< of a logical line; never in Module::tokens
};

enum class Operator : std::uint8_t {
  kPlus,
  kMinus,
  kTimes,
  kDivide,
  kIntegerDivide,
  kPower,
  kConcatenate,
  kEqual,
  kLess,
  kGreater,
  kNotEqual,
  kLessEqual,
  kGreaterEqual,
  kAssignArgument,  ///< ":="
  kDot,
  kBang,
  kComma,
  kSemicolon,
  kOpen,
  kClose,
  kColon,
  kQuestion,
  kFileNumber,  ///< "#" before a file number
};

/// Bits of Token::flags.
namespace token_flag {
inline constexpr std::uint8_t kBlankBefore = 1;      ///< blank, continuation or line start before it
inline constexpr std::uint8_t kContinuedBefore = 2;  ///< first token of a physical line that continues another
inline constexpr std::uint8_t kBracketed = 4;        ///< a name in brackets
inline constexpr std::uint8_t kSuffixed = 8;         ///< a name or number with a type suffix
inline constexpr std::uint8_t kUnclosed = 16;        ///< a string or bracket without its end
}  // namespace token_flag

struct Token {
  std::uint32_t offset;
  std::uint32_t length;
  std::uint32_t line;
  std::uint32_t column;
  NameId name;  ///< names only, else kNone; of "(" the index of its ")" among the tokens of the logical line, or kNone
  TokenKind kind;
  std::uint8_t flags;   ///< token_flag
  std::uint8_t detail;  ///< operators: the Operator; names and numbers with a suffix: the BuiltinType it stands for
};

}  // namespace quillmate::language
